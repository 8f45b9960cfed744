' Converts every image of a folder to PNG, next to the original:
'   cscript convert.vbs FOLDER
' The control is registered before (regsvr32 quillet.ocx). Ends with 1 when a file failed.
Option Explicit

Const twPNG = 4

Dim files, folder, file, control, target, status, failures
If WScript.Arguments.Count <> 1 Then
  WScript.Echo "usage: cscript convert.vbs FOLDER"
  WScript.Quit 2
End If
Set files = CreateObject("Scripting.FileSystemObject")
Set folder = files.GetFolder(WScript.Arguments(0))
Set control = CreateObject("Quillet.Twain")
control.FileType = twPNG
failures = 0

For Each file In folder.Files
  If IsImage(file.Name) Then
    control.filename = file.Path
    control.Load
    If control.BitmapWidth = 0 Then
      WScript.Echo file.Name & ": cannot be read"
      failures = failures + 1
    Else
      target = files.BuildPath(folder.Path, files.GetBaseName(file.Name) & ".png")
      control.filename = target
      status = control.Save
      If status = 0 Then
        WScript.Echo file.Name & ": " & control.BitmapWidth & " x " & control.BitmapHeight
      Else
        WScript.Echo file.Name & ": cannot be saved, status " & status
        failures = failures + 1
      End If
    End If
  End If
Next
If failures > 0 Then WScript.Quit 1

Function IsImage(name)
  Select Case LCase(files.GetExtensionName(name))
    Case "bmp", "jpg", "jpeg", "gif", "tif", "tiff"
      IsImage = True
    Case Else
      IsImage = False
  End Select
End Function
