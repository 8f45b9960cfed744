' Every member that scripts see: properties are written and read back, methods are called. Those
' that wait for a person (the dialogs, the choice of a source, About) are called with an argument
' too many, which is an error before anything shows.
'   cscript all_members.vbs PAGE.bmp FOLDER
Option Explicit

Dim control, other, page, text, count
page = WScript.Arguments(0)
text = WScript.Arguments(1) & "\members.tif"
Set control = CreateObject("Quillet.Twain")
count = 0

' A property that was written before is two members.
Sub Wrote(name, told, expected)
  count = count + 1
  Expect name, told, expected
End Sub
Sub Expect(name, told, expected)
  count = count + 1
  If told <> expected Then WScript.Echo name & " is " & told & ", expected " & expected
End Sub

control.Quality = 55
Wrote "Quality", control.Quality, 55
control.Compression = 2
Wrote "Compression", control.Compression, 2
control.FileType = 4
Wrote "FileType", control.FileType, 4
control.BorderStyle = 0
Wrote "BorderStyle", control.BorderStyle, 0
control.BackColor = 255
Wrote "BackColor", control.BackColor, 255
control.Enabled = True
Wrote "Enabled", control.Enabled, True
control.MousePointer = 2
Wrote "MousePointer", control.MousePointer, 2
control.AutoRedraw = True
Wrote "AutoRedraw", control.AutoRedraw, True
control.ToolTipText = "a tip"
Wrote "ToolTipText", control.ToolTipText, "a tip"
control.ColorType = 2
Wrote "ColorType", control.ColorType, 2
control.Resolution = 50
Wrote "Resolution", control.Resolution, 50
control.filename = page
Wrote "filename", control.filename, page
control.ShowProgress = False
Wrote "ShowProgress", control.ShowProgress, False
control.ShowInterface = False
Wrote "ShowInterface", control.ShowInterface, False
control.Scrollable = True
Wrote "Scrollable", control.Scrollable, True
Set control.MouseIcon = Nothing
Wrote "MouseIcon", control.MouseIcon Is Nothing, True

control.Load: count = count + 1
Expect "BitmapWidth", control.BitmapWidth, 413
Expect "BitmapHeight", control.BitmapHeight, 585
Expect "hDC", control.hDC <> 0, True
Expect "hwnd", control.hwnd <> 0, True
Set other = control.Picture
Expect "Compare", control.Compare(other), True

control.Flip: control.Reverse: control.Rotate
Expect "Flip", control.BitmapWidth, 585
Expect "Reverse", control.BitmapHeight, 413
Expect "Rotate", control.Compare(other), False
control.Resize 60, 40
Expect "Resize", control.BitmapWidth, 60
control.Crop 0, 0, 50, 30
Expect "Crop", control.BitmapWidth, 50
control.Invert: control.Sharpen: control.SharpenMore: control.Blur: count = count + 4
control.Contrast 10: control.Fade 10: control.Lighten 10: count = count + 3
control.Fit: control.Zoom 2: control.Refresh: count = count + 3
control.GrayScale: control.BlackWhite: count = count + 2
Set control.Picture = other
Wrote "Picture", control.BitmapWidth, 413

control.FileType = 3
control.filename = text
Expect "Save", control.Save, 0
Expect "SaveAdd", control.SaveAdd(text), 0
' The tests' source has a page of 4 inches.
control.Scan
control.Scan "A title"
text = "A title"
control.Scan text
Expect "Scan", control.BitmapWidth, 200

Sub Refused(name)
  count = count + 1
  If Err.Number <> 450 Or Err.Source <> "Quillet.Twain" Then
    WScript.Echo name & " with too many arguments is error " & Err.Number & " of " & Err.Source
  End If
  Err.Clear
End Sub
On Error Resume Next
control.About 1: Refused "About"
control.SelectSource 1, 2: Refused "SelectSource"
control.ShowSave 1, 2, 3, 4: Refused "ShowSave"
control.ShowSaveAdd 1, 2, 3: Refused "ShowSaveAdd"
control.ShowLoad 1, 2, 3, 4: Refused "ShowLoad"

WScript.Echo count & " members"
