' A tour of the library from VBScript: every class, For Each, fonts, errors, files.
'
'     cscript //nologo tour.vbs FOLDER
'
' It writes into the folder, which must exist. A test compares what it prints with
' tests/windows/tour.vbs.txt.
Option Explicit

Dim folder, document
folder = WScript.Arguments(0)
Set document = CreateObject("VNDoc6.vnDocument")

FillDetails
FillSteps
FillLinks
FillContainers
FillAttachments
FillTitles
FillTemplates
UseProperties
UseFieldsAndForms
MeetErrors
SaveAndLoad

Sub Say(line)
  WScript.Echo line
End Sub

Sub FillDetails()
  Say "-- Details and revisions"
  Dim revision
  With document.Details
    .Title = "Purchase approval"
    .DocumentCode = "PA-1"
    .Revision = 1.5
    .DateApproved = DateSerial(2026, 3, 1)
    .NewRevision "First issue"
    Say .Title & ", " & .DocumentCode & ", " & .Revision & ", " & Year(.DateApproved)
  End With
  For Each revision In document.RevisionHistory
    Say "revision " & revision.Revision & ": " & revision.Reason
  Next
End Sub

Sub FillSteps()
  Say "-- Steps, figures, tasks"
  Dim label, step, task, other
  For Each label In Array("Ask", "Decide", "Order")
    Set step = document.NewStep
    step.Label = label
    step.Figure.Left = 100 * step.StepIndex
    step.Figure.Shape = 2
    Set task = step.NewTask
    task.Name = "Do: " & label
    task.TaskType = 3
  Next
  Set step = document.Steps(2)
  step.Figure.Font.Bold = True
  step.Figure.Font.Size = 12
  For Each other In document.Steps
    Say other.StepIndex & " " & other.Label & " at " & other.Figure.Left & ", " & _
      other.Figure.Font.Name & " " & other.Figure.Font.Size & " " & CInt(other.Figure.Font.Bold) & _
      ", " & other.Tasks(1).Name & " " & other.Tasks(1).TaskOrder
  Next
  Say document.Steps(step.Key).Label & " " & document.Steps.ItemByStepIndex(3).Label & " " & _
    document.Steps.LastIndex & " " & (document.Steps("nowhere") Is Nothing)
  Say document.CopyStep(step).Figure.Font.Size & " " & document.Steps.Count
  document.Steps.Remove 4
  Say document.Steps.Count
End Sub

Sub FillLinks()
  Say "-- Links, lines, conditions"
  Dim link, condition
  Set link = CreateObject("VNDoc6.vnLink")
  link.OriginStepKey = document.Steps(1).Key
  link.DestinationStepKey = document.Steps(2).Key
  link.Text = "next"
  document.Links.Add link
  link.Line.ExtraPointCount = 2
  link.Line.ExtraPointX(1) = 40
  link.Line.ArrowDest = 3
  Set condition = link.NewCondition("Within budget", "amount < 100")
  condition.FailMessage = "Too expensive"
  For Each link In document.Links
    Say link.Text & ", " & link.Line.ExtraPointX(1) & ", " & link.Line.ArrowDest & ", " & _
      (link.Line.Document Is document)
  Next
  For Each condition In document.Links(1).Conditions
    Say condition.DisplayName & ": " & condition.ConditionTest & " / " & condition.FailMessage
  Next
End Sub

Sub FillContainers()
  Say "-- Containers, chart"
  Dim container
  Set container = CreateObject("VNDoc6.vnContainer")
  container.Label = "Purchasing"
  document.Containers.Add container
  container.Figure.Width = 500
  Set document.Steps(1).Container = container
  For Each container In document.Containers
    Say container.Label & " " & container.Figure.Width
  Next
  document.Chart.ShowGrid = True
  document.Chart.GridSizeX = 12
  document.Chart.Font.Italic = True
  Say CInt(document.Chart.ShowGrid) & " " & document.Chart.GridSizeX & " " & _
    CInt(document.Chart.Font.Italic)
End Sub

Sub FillAttachments()
  Say "-- Files, jumps, items"
  Dim attached, jump, items, item
  Set attached = CreateObject("VNDoc6.vnFile")
  attached.DisplayName = "Form"
  attached.FileName = "form.pdf"
  document.Steps(1).Files.Add attached
  Set jump = CreateObject("VNDoc6.vnJump")
  jump.DisplayName = "Suppliers"
  document.Steps(1).Jumps.Add jump
  Say document.Files(1).FileName & " " & document.Files.Count & " " & document.Jumps(1).DisplayName
  Set items = CreateObject("VNDoc6.vnItems")
  items.NewItem "Red"
  items.NewItem
  For Each item In items
    Say item.ID & " " & item.DisplayName
  Next
End Sub

Sub FillTitles()
  Say "-- Titles and references"
  Dim title, reference
  ' The first look asks the title handler, which this document has none of.
  Say document.Titles.Count
  document.Titles.AddTitle 7, "buyer", "Buyer", "Buys things"
  document.Titles.AddTitle 8, "boss", "Head of purchasing"
  For Each title In document.Titles
    Say title.ID & " " & title.Ref & " " & title.DisplayName & " '" & title.Description & "'"
  Next
  Set reference = document.Steps(2).PerformedBy.Add("boss")
  For Each reference In document.Steps(2).PerformedBy
    Say reference.Ref & " = " & reference.DisplayName
  Next
  document.Details.AuthorisedBy.Ref = "buyer"
  Say document.Details.AuthorisedBy.DisplayName & " " & CInt(document.Titles.UsingHandler)
End Sub

Sub FillTemplates()
  Say "-- Templates"
  Dim library, template, again
  Set library = CreateObject("VNDoc6.vnTemplateLibrary")
  Set template = library.FigureTemplates.NewItem("Box")
  template.Value = "shape"
  library.FigureTemplates.NewItem
  library.SaveAs folder & "\templates.vnt"
  Set again = CreateObject("VNDoc6.vnTemplateLibrary")
  Say CInt(again.Load(folder & "\templates.vnt"))
  For Each template In again.FigureTemplates
    Say template.DisplayName & " '" & template.Value & "'"
  Next
  Say again.GetTemplateByKey(again.FigureTemplates(1).Key).Value
End Sub

Sub UseProperties()
  Say "-- Properties"
  Dim bag, entry, font
  Set bag = CreateObject("VNDoc6.Properties")
  bag.Add "number", 5
  bag.Add "text", "a=b:c"
  bag.Add "flag", True
  bag.Add "when", DateSerial(2026, 3, 1)
  For Each entry In bag
    Say entry.Key & " " & entry.TypeName & " " & CStr(entry.Value = bag.Value(entry.Key, 0))
  Next
  bag("number").Value = 6
  Say bag.Count & " " & bag.Value("number", 0) & " " & bag.Value("missing", "none") & " " & _
    CInt(bag.Exists("text")) & " " & bag.Key(2)
  Set entry = CreateObject("VNDoc6.Properties")
  entry.LoadText bag.Text
  Say entry.Text = bag.Text
  Set document.Properties = bag
  Say document.Properties.Count
End Sub

Sub UseFieldsAndForms()
  Say "-- Fields and forms"
  Dim definitions
  For Each definitions In Array("FieldDefs", "FieldValues", "FormDef")
    With CreateObject("VNDoc6." & definitions)
      .Text = "text of " & definitions
      Say .Text
    End With
  Next
  document.Steps(1).Fields.Text = "values"
  Say document.Steps(1).Fields.Text & " '" & document.FormSteps.Text & "'"
End Sub

Sub MeetErrors()
  Say "-- Errors"
  On Error Resume Next
  document.IR = 7
  Report
  document.GUID = "mine"
  Report
  document.NoSuchMember
  Report
  document.Steps(1).StepIndex = "many"
  Report
  document.Steps(1).StepIndex = 3000000000
  Report
  document.SaveAs 1, 2
  Report
  document.SetFieldDefsSteps "fields", "form"
  Report
  Set document.Steps(1).Container = document.Chart
  Report
  Say document.Steps(1).Container.Label
  Report
  Say "IR is " & document.IR & ", GUID is '" & document.GUID & "'"
End Sub

Sub Report()
  Say Err.Number & " " & Err.Source
  Err.Clear
End Sub

Sub SaveAndLoad()
  Say "-- Files"
  Dim again
  Say CInt(document.SaveAs(folder & "\tour.vn6")) & " " & CInt(document.GUID <> "")
  Set again = CreateObject("VNDoc6.vnDocument")
  Say CInt(again.Load(folder & "\tour.vn6", "")) & " " & CInt(again.GUID = document.GUID)
  Say again.Details.Title & ", " & again.Steps.Count & " steps, " & again.Links.Count & " links, " & _
    again.Containers.Count & " containers, " & again.Titles.Count & " titles"
  Say CInt(again.Steps(2).Figure.Font.Bold) & " " & again.Containers(1).Label & " " & _
    again.Steps(1).Files(1).FileName & " " & again.Links(1).Conditions(1).FailMessage
  Say CInt(again.Load(folder & "\tour.vn6", ""))
End Sub
