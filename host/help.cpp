#include "host/help.h"

namespace quillet {

const char* const kHelp = R"(Usage: quillet [option | step]...

Puts the TWAIN control in a window and runs steps against it, in order.

Steps
  Name=value        writes a property
  Name              reads a property, or calls a method without arguments
  Name:a,b          calls a method; an empty field is an omitted argument
  @verb:...         does what the host or the user does (below)

  A step is split at its first = or :. Names ignore case. In arguments, \, is a comma and any other
  backslash is just a backslash; a method whose one parameter is a String takes all that follows
  the colon. Numbers are decimal, or hexadecimal with &H or 0x; Booleans are True or False;
  enumeration values may be given by name, as in Fit:twFITWIDTH. Where a picture is expected
  (Picture=, MouseIcon=, Compare:), text names a BMP or ICO file, @x the picture kept as x, and
  Picture= assigns nothing. A file whose name begins with @ is ./@...

  Reads and results print one line: numbers and text as they are, with line feed, carriage return,
  NUL and backslash as \n, \r, \0 and \\; a picture as WxH in pixels (0x0 without bitmap); no
  picture as Nothing.

What the host and the user do (points and sizes in pixels of the control's inside)
  @snapshot:FILE.png          saves what a person sees of the control, border included
  @resize:WxH                 gives the control a new inside size
  @scroll:h|v,VALUE           drags a scroll bar's thumb there and lets go
  @arrow:h|v,+|-              clicks a scroll bar's arrow
  @page:h|v,+|-               clicks in a scroll bar beside the thumb
  @mouse:down|move|up|click|dblclick,X,Y[,BUTTON[,SHIFT]]
                              BUTTON 1 left (if not given), 2 right, 4 middle, for move the sum of
                              those held; SHIFT the sum of 1 shift, 2 control, 4 alt
  @key:down|press|up,CODE[,SHIFT]
  @layout                     prints left, top, width and height in twips, of the picture box with
                              its size in pixels, of the bars with visible, min, max and value
  @save-properties:FILE       saves the control's settings that differ from their defaults as text
  @load-properties:FILE       as the first step only: the control starts with these settings
  @keep:NAME                  keeps the picture that the control has now
  @close                      lets go of the control and closes its window

  What the user will do in the next dialog is said before it; otherwise they cancel.
  @choose:NAME                picks that source in the next source chooser (SelectSource)
  @source:scan|cancel         presses that button in the next dialog of a source (Scan with
                              ShowInterface=True)
  @answer:PATH                types that name into the next file dialog (ShowSave, ShowSaveAdd,
                              ShowLoad) and answers yes when it asks whether to replace or create
                              the file; a relative name counts from the dialog's folder
  @answer-no:PATH             answers no: the dialog stays open, for a further @answer or cancelled
  @cancel                     cancels the next file dialog

  After About the steps go on inside its window until it is closed; then those behind About follow.
  @web                        clicks the window's address: prints what a browser would open
  @ok                         clicks the window's button, which closes it

Options
  --view WxH        inside size without scroll bars, in pixels (800x600)
  --steps FILE|-    runs the steps in a file or standard input, one a line, at this place among the
                    others; blank lines and lines that begin with # are skipped
  --events          prints each event and property-change notification as it comes
  --on EVENT=STEP   runs a step inside that event, but not inside one that the step itself caused;
                    may be repeated
  --source NAME     scans with that source (the one chosen last); --list-sources names them
  --page FILE       lays the picture in a BMP file on the scanner's glass (the built-in test page)
  --trace           prints each TWAIN operation: what is sent, return code, what comes back
  --fault DAT/MSG[/CAP]=TWRC
                    that TWAIN operation answers so and does nothing, as in
                    DAT_CAPABILITY/MSG_SET/ICAP_YRESOLUTION=TWRC_FAILURE; may be repeated
  --no-manager      as on a machine without TWAIN
  --ocx FILE        on Windows: hosts the control in that file, as other programs do, instead of
                    running its core in this one; without --trace, --fault, About, @web and @ok
  --registered      the same with the control that is registered as Quillet.Twain
  --byref           prints arguments that a call changed
  --keep-going      goes on after a step that failed
  --leaks           prints which platform objects are left when the control is gone
  --members         prints the control's members and ends
  --list-sources    prints the simulated sources and ends
  --self-test       alone, on Windows: checks what the control relies on and prints what held
  --version, --help

Exit status
  0  everything went well
  1  a step failed; the run ends there unless --keep-going (or with --leaks, something is left)
  2  wrong usage, found before anything runs
  3  Save or SaveAdd answered a status other than 0

Examples
  quillet Picture=page.bmp Rotate Fit:twFITWIDTH @snapshot:page.png
  quillet Resolution=150 Scan Fit:twFITINTO @snapshot:page.png
  quillet FileType=twPNG filename=page.png Scan Save
  quillet Scan @answer:page.jpg "ShowSave:Images|*.jpg"
  quillet --trace ShowInterface=True @source:scan Scan
  quillet --view 320x200 Picture=page.bmp @scroll:v,120 @layout @snapshot:view.png
  quillet --events --on Click=Flip Picture=page.bmp @mouse:click,10,10
  quillet --events --leaks --on Progress=@close Picture=page.bmp Flip
  quillet Picture=a.bmp @keep:a Flip Flip Compare:@a
)";

}  // namespace quillet
