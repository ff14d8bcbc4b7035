// A tour of the library from JScript: what this language does in its own way.
//
//     cscript //nologo tour.js FOLDER
//
// It writes into the folder, which must exist. A test compares what it prints with
// tests/windows/tour.js.txt.
var folder = WScript.Arguments(0);
var document = new ActiveXObject("VNDoc6.vnDocument");

function say(line) {
  WScript.Echo(line);
}

function each(collection, what) {
  for (var walk = new Enumerator(collection); !walk.atEnd(); walk.moveNext()) what(walk.item());
}

function failure(what) {
  try {
    what();
    return "no error";
  } catch (error) {
    return (error.number & 0xffff) + " " + error.description;
  }
}

// Properties are read as such and called as methods; names have any letter case.
var labels = ["Ask", "Decide", "Order"];
for (var i = 0; i < labels.length; ++i) {
  var step = document.NewStep();
  step.Label = labels[i];
  step.figure.LEFT = 100.5 * (i + 1);
}
say(document.Steps.Count + " " + document.Steps.Count() + " " + document.steps(2).label + " " +
    document.Steps.Item(3).Label);
each(document.Steps, function (step) {
  say(step.StepIndex + " " + step.Label + " " + step.Figure.Left);
});

// Two walks at once, and one that starts again.
var outer = new Enumerator(document.Steps);
var inner = new Enumerator(document.Steps);
outer.moveNext();
say(outer.item().Label + " " + inner.item().Label);
outer.moveFirst();
say(outer.item().Label);

// An object is assigned like any other value, Nothing is null.
var font = document.Steps(1).Figure.Font;
font.Bold = true;
document.Chart.Font = font;
say(document.Chart.Font.Bold + " " + (document.Steps("nowhere") == null));
var link = new ActiveXObject("VNDoc6.vnLink");
link.Document = document;
document.Links.Add(link);
say(link.Document.Steps.Count + " " + document.Links.Count);

// Numbers of all kinds, texts for numbers, and what can't be converted.
step.StepIndex = "7";
step.Figure.Top = 1 / 4;
say(step.StepIndex + " " + step.Figure.Top);
say(failure(function () { step.StepIndex = "many"; }));
say(failure(function () { step.StepIndex = 3e9; }));
say(failure(function () { document.IR = 7; }));
say(failure(function () { document.NoSuchMember(); }));
say(failure(function () { document.Steps.Add(document.Chart); }));
say(failure(function () { document.NewStep("", "", ""); }));

// Optional arguments.
var copy = document.NewStep(step.Key);
say(copy.Label + " " + document.Steps.Count);

var bag = document.Properties;
bag.Add("a", 1.5);
bag.Add("b", "text");
bag.Add("c", document.Details);
each(bag, function (entry) {
  say(entry.Key + " " + entry.TypeName);
});
bag.RemoveAll();

say(document.SaveAs(folder + "\\tour.js.vn6") + "");
var again = new ActiveXObject("VNDoc6.vnDocument");
say(again.Load(folder + "\\tour.js.vn6", "") + " " + again.Steps.Count + " " +
    again.Steps(1).Figure.Font.Bold);

// Every class is created by name. What is nobody's belongs to no document.
var alone = "Chart Steps Step Figure Links Link Line Conditions Condition Tasks Task Containers " +
    "Container Files File Jumps Jump Items Item Details Revisions Revision Titles Title TitleRefs " +
    "TitleRef";
var names = alone.split(" ");
for (var i = 0; i < names.length; ++i) {
  var object = new ActiveXObject("VNDoc6.vn" + names[i]);
  if (object.Document != null) say(names[i] + " has a document");
  if (/s$/.test(names[i]) && names[i] != "Details") each(object, function () { say("a member"); });
}
var library = new ActiveXObject("VNDoc6.vnTemplateLibrary");
var template = new ActiveXObject("VNDoc6.vnTemplate");
template.DisplayName = "Box";
library.FigureTemplates.Add(template);
say(template.Key + " " + library.GetTemplateByKey("FIG0").DisplayName + " " +
    new ActiveXObject("VNDoc6.vnTemplates").Count);
var property = new ActiveXObject("VNDoc6.Property");
property.Value = 2.5;
say(property.TypeName + " " + property.Value + " " + new ActiveXObject("VNDoc6.Properties").IsEmpty);
var standIns = ["FieldDefs", "FieldValues", "FormDef"];
for (var i = 0; i < standIns.length; ++i) {
  var standIn = new ActiveXObject("VNDoc6." + standIns[i]);
  standIn.Text = standIns[i] + "'s text";
  say(standIn.Text);
}
