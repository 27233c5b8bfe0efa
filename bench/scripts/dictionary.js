// The same loop as in dictionary.vel and dictionary.vbs.
var d = new ActiveXObject("Scripting.Dictionary");
d.Add("k", 1);
var sum = 0;
for (var i = 1; i <= 200000; i++)
    sum = sum + d.Item("k") + d.Count;
WScript.Echo(sum);
