#include "totalize/report_list_window.h"

#include <QHeaderView>
#include <QPushButton>
#include <QResizeEvent>
#include <QTableWidget>

#include "shell/catalogue.h"
#include "shell/frame/message_service.h"
#include "shell/shared_state.h"

namespace recscope {

namespace {
constexpr int kTwipsPerPixel = 15;
constexpr int kColumnTwips = 1000;
constexpr int kFileOpenError = 11107;
constexpr int kCsvWritten = 41204;
}  // namespace

ReportListWindow::ReportListWindow(int slot, QWidget *parent) : QWidget(parent), slot_(slot) {
  setObjectName("frmChohyoList");
  grid_ = new QTableWidget(this);
  grid_->setObjectName("MSFlexGrid1");
  grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  grid_->horizontalHeader()->hide();
  grid_->verticalHeader()->hide();
  save_ = new QPushButton(QString::fromStdString(GetMessageText(41206)), this);
  save_->setObjectName("cmdSave");
  connect(save_, &QPushButton::clicked, this, &ReportListWindow::save);
  resize(900, 600);
}

ChohyoContext ReportListWindow::Context() const {
  const SharedState &state = Shared();
  ChohyoContext context;
  context.Info = &state.Slot(slot_).Record;
  context.Table = &SharedChohyoTable();
  context.Cycle = state.Slot(slot_).Period();
  context.DateFormatNo = state.DateFormatNo;
  context.DecimalChar = state.DecimalChar;
  context.Now = ReportClock()();
  return context;
}

std::string ReportListWindow::TemplatePath() const {
  return ProgramFilePath(Shared().ProgramFolder, ReportTemplateName(type_));
}

std::string ReportListWindow::csvPath() const {
  return ReportCsvPath(Shared().Slot(slot_).Record.FilePath, type_, SharedChohyoTable().BaseTime);
}

void ReportListWindow::subMakeChohyo(int type) {
  type_ = type;
  setWindowTitle(QString::fromStdString(ReportTypeName(type)) +
                 QStringLiteral("%1").arg(slot_, 2, 10, QLatin1Char('0')) + "[" +
                 QString::fromStdString(Shared().Slot(slot_).Record.FilePath) + "]");
  grid_->hide();
  grid_->setRowCount(0);
  grid_->setColumnCount(0);
  sheet_.clear();
  ReportTemplate tpl;
  if (!ReadReportTemplate(TemplatePath(), tpl)) {
    grid_->show();
    ShowMessage(this, kFileOpenError);
    return;
  }
  sheet_ = MakeChohyoSheet(tpl, Context());
  const int columns = sheet_.empty() ? 0 : static_cast<int>(sheet_.front().size());
  grid_->setRowCount(static_cast<int>(sheet_.size()));
  grid_->setColumnCount(columns);
  for (int r = 0; r < static_cast<int>(sheet_.size()); ++r)
    for (int c = 0; c < columns; ++c)
      grid_->setItem(r, c, new QTableWidgetItem(QString::fromStdString(sheet_[r][c])));
  for (int c = 0; c < columns; ++c) grid_->setColumnWidth(c, kColumnTwips / kTwipsPerPixel);
  grid_->show();
}

void ReportListWindow::save() {
  const int result = SaveChohyoCsv(TemplatePath(), Context(), Shared().ListSeparator, csvPath());
  ShowMessage(this, result == 0 ? kCsvWritten : result);
}

void ReportListWindow::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  // While the inner height is at least 1000 twips: the grid leaves 570 twips at
  // the side and 1000 below, and the button stands 730 twips above the bottom.
  const int width = event->size().width();
  const int height = event->size().height();
  if (height * kTwipsPerPixel < 1000) return;
  grid_->setGeometry(0, 0, std::max(0, width - 570 / kTwipsPerPixel),
                     height - 1000 / kTwipsPerPixel);
  save_->setGeometry(120 / kTwipsPerPixel, height - 730 / kTwipsPerPixel, 1200 / kTwipsPerPixel,
                     375 / kTwipsPerPixel);
}

}  // namespace recscope
