' The same loop as in dictionary.vel and dictionary.js.
Set d = CreateObject("Scripting.Dictionary")
d.Add "k", 1
sum = 0
For i = 1 To 200000
    sum = sum + d.Item("k") + d.Count
Next
WScript.Echo sum
