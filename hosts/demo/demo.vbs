' The demo's other half: a script host that reads what the C++ host saved, through the automation
' server, edits it, saves it, and loads its own file again. What it has to say goes to the Unicode
' text "script account.txt" in the folder: a console may not have all the letters.
'
'     cscript //nologo demo.vbs FOLDER
Option Explicit

Dim folder, document, copy, files, account
If WScript.Arguments.Count <> 1 Then Fail "usage: cscript //nologo demo.vbs FOLDER"
folder = WScript.Arguments(0)
Set files = CreateObject("Scripting.FileSystemObject")
Set account = files.CreateTextFile(folder & "\script account.txt", True, True)

Set document = CreateObject("VNDoc6.vnDocument")
If Not document.Load(folder & "\purchase approval.vn6", "") Then Fail "The document can't be loaded."
Say "A script reads what the C++ host wrote:"
Report document

Say "It adds a step with a task and a figure, links it, and saves a copy."
AddAuditStep document
If Not document.SaveAs(folder & "\audited.vn6") Then Fail "The copy can't be saved."

Set copy = CreateObject("VNDoc6.vnDocument")
If Not copy.Load(folder & "\audited.vn6", "") Then Fail "The copy can't be loaded."
Say "Its own file, loaded again:"
Report copy
If copy.GUID = document.GUID And copy.Steps.Count = document.Steps.Count Then
  Say "Both documents agree."
Else
  Fail "The documents differ."
End If

Sub Say(line)
  account.WriteLine line
End Sub

Sub Fail(why)
  Err.Raise vbObjectError + 1, "demo.vbs", why
End Sub

Sub Report(anyDocument)
  Dim step
  Say "  """ & anyDocument.Details.Title & """, " & anyDocument.Steps.Count & " steps, " & _
    anyDocument.Links.Count & " links, " & anyDocument.Containers.Count & " containers"
  For Each step In anyDocument.Steps
    Say "  " & step.StepIndex & ". " & step.Label & "  [shape " & step.Figure.Shape & _
      ", " & step.Figure.Font.Name & " " & step.Figure.Font.Size & ", " & step.Tasks.Count & " tasks]"
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
