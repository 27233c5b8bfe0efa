// The programs. Each body can run again on the same variables, and prints one value a line.
#include "torture/scripts.h"

namespace torture {
namespace {

constexpr const char* server = "h = actxserver('Sample.Server.1');";

Script keep(const char* name, const std::string& document) {
    const std::string made = " = actxserver('Sample." + document + ".1');";
    return {name, "h" + made + " o" + made + " h.Text = 'old'; save(h, 'kept.tmp');",
            "h.Text = 'new'; h.Number = 2.5;\n"
            "try, save(h, 'kept.tmp'); catch e, disp(e.identifier), end\n"
            "o.Text = 'own';\n"
            "load(o, 'kept.tmp');\n"
            "disp(o.Text)\n",
            "new\n", "old\nown\n"};
}

const Script table[] = {
    {"create", "",
     "h = actxserver('Sample.Server.1');\n"
     "disp(h.Compute(2))\n"
     "k = actxserver('Sample.Server.1');\n"
     "disp(k.Name)\n",
     "5\nSample\n"},
    {"create further", server,
     "k = actxserver('Sample.Server.1');\n"
     "disp(k.Compute(3))\n"
     "k = actxserver('Sample.Server.1', 'interface', 'IDispatch');\n"
     "disp(k.Compute(4))\n",
     "10\n17\n"},
    {"attach", server,
     "h.RegisterActive();\n"
     "r = actxGetRunningServer('Sample.Server.1');\n"
     "disp(r.Name)\n"
     "r = 0; h.RevokeActive();\n",
     "Sample\n"},
    {"describe", "",
     "h = actxserver('Sample.Server.1');\n"
     "m = methods(h); for i = 1:numel(m), disp(m{i}), end\n"
     "p = fieldnames(get(h)); for i = 1:numel(p), disp(p{i}), end\n"
     "e = fieldnames(events(h)); for i = 1:numel(e), disp(e{i}), end\n"
     "n = interfaces(h); disp(n{1})\n",
     nullptr},
    {"call", server,
     "disp(h.Add(1, 2))\n"
     "disp(h.Concat('Auto', \"mation\"))\n"
     "[q, r] = h.Divide(17, 5); disp(q), disp(r)\n"
     "disp(h.Greet()), disp(h.Greet('you'))\n"
     "[a, b] = h.Swap(1, 2); disp(a), disp(b)\n"
     "disp(h.Next('green'))\n"
     "disp(h.OutBSTR())\n"
     "disp(h.OutVariant())\n"
     "disp(h.EchoDate('2000-01-01'))\n"
     "disp(h.EchoDecimal('1.5')), disp(h.EchoI8(int64(7))), "
     "disp(h.EchoBool(true))\n",
     nullptr},
    {"failed call", server,
     "try, h.Divide(1, 0); catch e, disp(e.identifier), end\n"
     "try, h.Fail(-2147352571); catch e, disp(e.identifier), end\n"
     "try, h.FailQuietly(); catch e, disp(e.identifier), end\n"
     "try, h.Crash(); catch e, disp(e.identifier), end\n",
     "VELMAR:COM:E1000\nVELMAR:COM:E2147614725\nVELMAR:COM:E2147500037\n"
     "VELMAR:COM:E2147614729\n"},
    {"values", server,
     "disp(h.Sum([1 2;3 4]))\n"
     "v = h.MakeVector(3); disp(v(3))\n"
     "disp(h.Describe({1, 'a', [1 2 3], {true}}))\n"
     "c = h.Echo({1, 'a', int8([1 2 3]), true}); disp(c{2})\n"
     "t = h.EchoArrayBSTR({'one', 'two'}); disp(t{2})\n"
     "a = h.Append([1 2], 3); disp(a(3))\n"
     "s = h.Squares(4); disp(s(4))\n"
     "m = h.MakeCells(2); disp(m{2, 2})\n"
     "b = h.EchoArrayBool([true false]); disp(b(1))\n"
     "disp(h.MakeValue('date'))\n"
     "disp(h.MakeValue('currency'))\n"
     "disp(h.MakeValue('error'))\n",
     nullptr, "0\n"},
    {"read", server,
     "disp(h.Name), disp(h.Width), disp(h.Height), disp(h.Visible), "
     "disp(h.Color)\n"
     "disp(h.Created), disp(h.Price), disp(h.Item(1)), disp(h.Level(1)), "
     "disp(h.Kind)\n"
     "s = get(h, 'Width'); disp(s)\n"
     "c = get(h, {'Name', 'Height'}); disp(c{2})\n"
     "disp(isprop(h, 'Name'))\n",
     nullptr},
    {"write", server,
     "h.Reset(); h.Name = 'x'; disp(h.Name)\n"
     "h.Width = 7; disp(h.Width)\n"
     "h.Color = 'blue'; disp(h.Color)\n"
     "h.Weights = [0.5 0.25]; w = h.Weights; disp(w(2))\n"
     "h.PropVariant = {1, 'a'}; v = h.PropVariant; disp(v{2})\n"
     "set(h, 'Height', 3); disp(h.Height)\n"
     "set(h, 'Item', 2, 'two'); disp(h.Item(2))\n"
     "c = h.NewChild(); h.Child = c; disp(h.Child.Name)\n"
     "h.PropDispatch = c; h.PropDispatch = h.NewChild();\n"
     "s = set(h); disp(s.Color{1})\n",
     nullptr},
    {"wrap", server,
     "c = h.NewChild('first'); disp(c.Name)\n"
     "disp(c.Increment(2))\n"
     "disp(h.Items.Item(2).Name)\n"
     "all = h.AllItems(); disp(all{3}.Name)\n"
     "m = h.Mixed(); disp(m{1})\n"
     "disp(h.UnknownItem.Name)\n"
     "o = h.OutDispatch(); disp(o.Name)\n"
     "disp(h.AnyItem(1).Name)\n"
     "disp(h.Self().Name)\n",
     nullptr},
    {"wrap new", "",
     "h = actxserver('Sample.Server.1');\n"
     "c = h.NewChild('first'); disp(c.Name)\n"
     "b = h.NewBare(); disp(class(b))\n",
     nullptr},
    {"by name", "h = actxserver('Sample.Server.1'); b = h.NewBare();",
     "set(b, 'Name', 'bare'); disp(get(b, 'Name'))\n"
     "set(b, 'Name', 'y'); disp(get(b, 'Name'))\n"
     "disp(invoke(b, 'Twice', 21))\n"
     "disp(invoke(h, 'Add', 1, 2))\n",
     "bare\ny\n42\n3\n"},
    {"release", server,
     "c = h.NewChild('a'); release(c); disp(isvalid(c))\n"
     "i = h.Items; d = i.Item(1); release(i); disp(d.Name), disp(isvalid(d))\n"
     "k = actxserver('Sample.Server.1'); c = k.NewChild('b'); delete(c);\n"
     "disp(isvalid(c)), disp(isvalid(k))\n"
     "c = 0; d = 0; i = 0; k = 0;\n",
     "0\nfirst\n1\n0\n0\n"},
    {"listen", server,
     "k = 0; k = h.Self();\n"
     "l = addlistener(k, 'Tick', @(src, event) disp(event.Count));\n"
     "k.FireTick(7);\n"
     "r = addlistener(k, 'Renamed', @(src, event) disp([event.OldName ' ' "
     "event.NewName]));\n"
     "k.FireNamed('old', 'new');\n"
     "m = addlistener(k, 'Measured', @(src, event) disp(event.Values(4)));\n"
     "k.FireMeasured(4);\n"
     "a = addlistener(k, 'ChildAdded', @(src, event) disp(event.Child.Name));\n"
     "k.FireChildAdded('Ada');\n"
     "delete(l), delete(r), delete(m), delete(a)\n"
     "disp(h.Connections)\n",
     "7\nold new\n4\nAda\n0\n",
     // A text that no memory is left for arrives as NaN, and joins the other as a null character.
     "\u2400 new\nold \u2400\n"},
    keep("keep file", "FileDocument"),
    keep("keep storage", "StorageDocument"),
    keep("keep stream init", "StreamInitDocument"),
    keep("keep stream", "StreamDocument"),
};

} // namespace

std::span<const Script> scripts() { return table; }

} // namespace torture
