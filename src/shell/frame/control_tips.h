#pragma once
// Texts of controls that have no catalogue text of their own (tool tips, and the
// captions of the commands a desktop program adds), in the operator's language.
#include <QString>

namespace recscope {

// The tip of a control by its objectName; an empty text for any other name.
// sbAutoFetch: the automatic fetch status panel while it says "設定エラー".
QString ControlTip(const QString &objectName);

// The caption of such a control by its objectName: mnuFileRecent (the records
// opened last), mnuViewFullScreen, mnuFileExportImage, mnuEditCopyImage and the
// picture export dialog's title and fields, msgPrinterSetting and
// msgPrinterSettingText (the title and text of the box shown when the printer
// cannot take a paper), frmDigital (the title of the real-time digital grid). An
// empty text for any other name.
QString ControlCaption(const QString &objectName);

}  // namespace recscope
