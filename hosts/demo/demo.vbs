' The demo's other half: a script host that reads what the C++ host saved, through the automation
' server, edits it, saves it, and loads its own file again.
'
'     cscript //nologo demo.vbs FOLDER
Option Explicit

Dim folder, document, copy
If WScript.Arguments.Count <> 1 Then Fail "usage: cscript //nologo demo.vbs FOLDER"
folder = WScript.Arguments(0)

Set document = CreateObject("VNDoc6.vnDocument")
If Not document.Load(folder & "\purchase approval.vn6", "") Then Fail "The document can't be loaded."
WScript.Echo "A script reads what the C++ host wrote:"
Report document

WScript.Echo "It adds a step with a task and a figure, links it, and saves a copy."
AddAuditStep document
If Not document.SaveAs(folder & "\audited.vn6") Then Fail "The copy can't be saved."

Set copy = CreateObject("VNDoc6.vnDocument")
If Not copy.Load(folder & "\audited.vn6", "") Then Fail "The copy can't be loaded."
WScript.Echo "Its own file, loaded again:"
Report copy
If copy.GUID = document.GUID And copy.Steps.Count = document.Steps.Count Then
  WScript.Echo "Both documents agree."
Else
  Fail "The documents differ."
End If

Sub Fail(why)
  Err.Raise vbObjectError + 1, "demo.vbs", why
End Sub

Sub Report(anyDocument)
  Dim step
  WScript.Echo "  """ & anyDocument.Details.Title & """, " & anyDocument.Steps.Count & " steps, " & _
    anyDocument.Links.Count & " links, " & anyDocument.Containers.Count & " containers"
  For Each step In anyDocument.Steps
    WScript.Echo "  " & step.StepIndex & ". " & step.Label & "  [shape " & step.Figure.Shape & _
      ", " & step.Figure.Font.Name & ", " & step.Tasks.Count & " tasks]"
  Next
End Sub

Sub AddAuditStep(anyDocument)
  Dim step, link, lastStep
  Set lastStep = anyDocument.Steps.ItemByStepIndex(anyDocument.Steps.LastIndex)
  Set step = anyDocument.NewStep
  step.Label = "Audit"
  step.Figure.Top = lastStep.Figure.Top + 1200
  step.Figure.Font.Bold = True
  step.NewTask.Name = "Sample ten orders"
  Set link = CreateObject("VNDoc6.vnLink")
  link.OriginStepKey = lastStep.Key
  link.DestinationStepKey = step.Key
  anyDocument.Links.Add link
End Sub
