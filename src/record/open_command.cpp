#include "record/open_command.h"

#include <QApplication>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMessageBox>
#include <QWidget>

#include "record/read_dialog.h"
#include "shell/catalogue.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {

constexpr int kTrendCaption = 19500;
constexpr std::int16_t kMenusWithFile = 1;

TrendWindowFactory &Factory() {
  static TrendWindowFactory factory = MakePlainTrendWindow;
  return factory;
}

RefusalNotice &Notice() {
  static RefusalNotice notice = [](QWidget *parent, const QString &text) {
    QMessageBox::information(parent, QApplication::applicationDisplayName(), text);
  };
  return notice;
}

}  // namespace

void SetTrendWindowFactory(TrendWindowFactory factory) {
  Factory() = factory ? std::move(factory) : TrendWindowFactory(MakePlainTrendWindow);
}

void SetRefusalNotice(RefusalNotice notice) {
  if (notice) Notice() = std::move(notice);
}

QString TrendWindowCaption(int slot) {
  const QString number = QStringLiteral("%1").arg(slot, 2, 10, QLatin1Char('0'));
  return QString::fromStdString(
             GetMessageText(kTrendCaption, "@FileNumber@", number.toStdString())) +
         "[" + QString::fromStdString(Shared().Slot(slot).Record.FilePath) + "]";
}

QWidget *MakePlainTrendWindow(int slot) {
  auto *window = new QWidget;
  window->setObjectName("frmTrend");
  window->setProperty("slot", slot);
  window->resize(640, 400);
  // The plain window owns its slot: its end frees it.
  QObject::connect(window, &QObject::destroyed, [slot] { CloseRecordSlot(Shared(), slot); });
  return window;
}

bool OpenRecordPath(QWidget *parent, QMdiArea *mdi, const QString &path, OpenOutcome *outcome) {
  SharedState &state = Shared();
  ReadDialog *reading = new ReadDialog(parent);
  reading->show();
  QCoreApplication::processEvents();
  const OpenOutcome result =
      OpenRecordFile(state, path.toStdString(),
                     [reading](int value, int maximum) { reading->SetProgress(value, maximum); });
  delete reading;
  if (outcome) *outcome = result;
  if (!result.opened) {
    Notice()(parent, QString::fromStdString(GetMessageText(result.messageId)));
    return false;
  }

  const int slot = result.slot;
  QWidget *window = Factory()(slot);
  window->setAttribute(Qt::WA_DeleteOnClose);
  window->setWindowTitle(TrendWindowCaption(slot));
  if (mdi) {
    const QSize firstSize = window->size();
    QMdiSubWindow *sub = mdi->addSubWindow(window);
    sub->setAttribute(Qt::WA_DeleteOnClose);
    sub->show();
    // The frame takes the window's own first size, plus its title and borders.
    sub->resize(firstSize + (sub->size() - window->size()));
  } else {
    window->show();
  }
  state.MenuState = kMenusWithFile;
  return true;
}

}  // namespace recscope
