#pragma once
// The report templates delivered with the program: a title block, one row an
// hour, day or month with the present value, the maximum and the minimum with
// their times, the average and an integral, and a total row, for blocks of three
// channels. A site edits its own copies in the home folder.
#include <string>

namespace recscope {

// The delivered bytes (code page 932, CR LF) of the template of a report type.
std::string DeliveredReportTemplate(int type);

// Writes each delivered template that `folder` does not hold yet; a template the
// site has there already is never replaced. False when one cannot be written.
bool EnsureReportTemplates(const std::string &folder);

}  // namespace recscope
