#pragma once
// The three small windows of the communication monitor: frmComInstantvalue
// (the last values of a group), frmComBargraph (a bar for each channel of a
// group) and frmComWholedisplay (every channel, six to a row). Each is redrawn
// by the monitor on every new sample, from the ring and slot 17's records.
#include <QWidget>
#include <vector>

#include "link/monitor_views.h"

class QTabBar;
class QTableWidget;
class QLabel;
class QScrollBar;

namespace recscope {

// The group tabs of frmComInstantvalue and frmComBargraph: one tab a group that
// has members, named by the group's name.
class MonitorGroupWindow : public QWidget {
  Q_OBJECT
 public:
  explicit MonitorGroupWindow(const char *objectName, QWidget *parent = nullptr);
  // The group shown (1 to 8).
  int currentGroup() const { return group_; }
  // A click on the tab of `groupNo`: that group becomes current and is redrawn.
  void selectGroup(int groupNo);
  // The sample at `index` of the ring is shown.
  void redraw(const MonitorRing &ring, int index);
  // The cells of the group as last drawn.
  const std::vector<MonitorCell> &cells() const { return cells_; }
  QString timeText() const;

 protected:
  virtual void Show() = 0;
  QTabBar *tabs_ = nullptr;
  QLabel *time_ = nullptr;
  std::vector<MonitorCell> cells_;

 private:
  int group_ = 1;
  const MonitorRing *ring_ = nullptr;
  int index_ = 0;
};

class ComInstantValueWindow : public MonitorGroupWindow {
  Q_OBJECT
 public:
  explicit ComInstantValueWindow(QWidget *parent = nullptr);
  // The texts of the list: a row a channel, columns label, tag, value, unit.
  QStringList rowTexts() const;

 protected:
  void Show() override;
  void resizeEvent(QResizeEvent *event) override;

 private:
  QTableWidget *grid_ = nullptr;
};

class ComBargraphWindow : public MonitorGroupWindow {
  Q_OBJECT
 public:
  explicit ComBargraphWindow(QWidget *parent = nullptr);

 protected:
  void Show() override;
  void resizeEvent(QResizeEvent *event) override;

 private:
  QWidget *picture_ = nullptr;
};

class ComWholeDisplayWindow : public QWidget {
  Q_OBJECT
 public:
  explicit ComWholeDisplayWindow(QWidget *parent = nullptr);
  void redraw(const MonitorRing &ring, int index);
  const std::vector<MonitorCell> &cells() const { return cells_; }
  int rows() const { return rows_; }
  // The cell texts as shown, "CH01 CH01TAG" over the value and unit, row by row.
  QStringList cellTexts() const;

 protected:
  void resizeEvent(QResizeEvent *event) override;

 private:
  // The scroll bars follow the window's size against the content's.
  void Layout();
  QWidget *viewport_ = nullptr;
  QWidget *content_ = nullptr;
  QScrollBar *vscroll_ = nullptr;
  QScrollBar *hscroll_ = nullptr;
  std::vector<QLabel *> labels_;
  std::vector<MonitorCell> cells_;
  int rows_ = 0;
};

}  // namespace recscope
