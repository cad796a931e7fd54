#pragma once
// The desktop side of the recorder link: the question after a failed request,
// the port settings dialog and the commands of the Communication menu.
class QWidget;

namespace recscope {

class MainWindow;

// The error of `code` (1 to 5: messages 11101 to 11105), then the question
// "処理を中止しますか？" (11100) with Yes and No. Returns 6 for Yes (abort), 7
// for No.
int ComErrorDialog(QWidget *parent, int code);

// The text shown when no free record number is left.
inline constexpr const char *kNoFileNameText = "File name does not exist.";

// Wires mnuRealTime and mnuComunicationFileRead (a pair of check marks),
// mnuComunicationSetting (dlgComsetting), mnuComunicationStart and
// mnuComunicationEnd. With "Real time monitor" checked, the start reads the
// recorder's setup into a new record pair and then polls its present values
// every 100 ms into that record; the end closes the port and the files and
// opens the record in a trend window.
void ConnectLinkCommands(MainWindow &window);

}  // namespace recscope
