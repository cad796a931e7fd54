#pragma once
// The desktop side of totalize files: mnuFileAdditionView (the open dialog, the
// open sequence with its messages, the window through the slot window route and
// the menu set after), and mnuFileChange, which tells a totalize window from the
// others by its caption and converts the one it names.
#include <QString>

class QMdiArea;
class QWidget;

namespace recscope {

// The open dialog of totalize files (title 11171, the filter of 11177, an
// existing file only): the path chosen, or an empty text when cancelled. Its
// objectName is "dlgAdditionOpen".
QString ChooseTotalizeFile(QWidget *parent);

// Opens `path` into a free totalize slot with the reading dialog and shows it in
// frmAddition; a refusal shows its message. The menu set is applied after every
// attempt. True when a window stands for it.
bool OpenAdditionPath(QWidget *parent, QMdiArea *mdi, const QString &path);

// mnuFileAdditionView: the dialog, then OpenAdditionPath.
void OpenAdditionFile(QWidget *parent, QMdiArea *mdi);

// The totalize CSV of `slot` with dlgRead, then 11132, 11130 or 11131. Returns
// the message id shown.
int RunTotalizeCsv(QWidget *parent, int slot);

// mnuFileChange: by the active window's caption, the totalize CSV of the slot in
// it, 11131 for the real-time view, otherwise the measurement CSV of the current
// record slot. Returns the message id shown (0 when nothing was converted).
int RunFileChange(QWidget *parent, QMdiArea *mdi);

}  // namespace recscope
