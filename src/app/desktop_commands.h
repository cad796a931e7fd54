#pragma once

namespace recscope {

class MainWindow;

// Connects the main window's commands to the subsystems that carry them out:
// opening records, the trend windows and their time axis, scales and views.
void ConnectDesktopCommands(MainWindow &window);

}  // namespace recscope
