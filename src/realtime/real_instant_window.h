#pragma once
// frmRealInstant: the present values of the monitor, for the tab of all
// channels (a channel label and a value a row) or for a group (label, tags,
// value, unit and four alarm lamps a row), with the time of the sample.
#include <QWidget>
#include <vector>

class QGridLayout;
class QLabel;
class QTabBar;

namespace recscope {

class RealInstantWindow : public QWidget {
  Q_OBJECT
 public:
  // `group`: 9 for all channels, else the group number.
  explicit RealInstantWindow(int group, QWidget *parent = nullptr);

  // subSetChInst: the rows of the tab of `group` laid out.
  void selectGroup(int group);
  // subRealInstantSet: the rows filled from the newest sample; the tabs made
  // anew when the monitor's tabs changed.
  void refresh();
  int group() const { return group_; }

 private:
  void subSetChInst();
  void subRealInstantSet();

  int group_;
  std::vector<std::string> tabNames_;
  QTabBar *tabs_ = nullptr;
  QLabel *timeCaption_ = nullptr;
  QLabel *time_ = nullptr;
  QWidget *rows_ = nullptr;
  QGridLayout *grid_ = nullptr;
  bool rebuilding_ = false;
};

}  // namespace recscope
