#include "totalize/report_templates.h"

#include <cstddef>
#include <filesystem>

#include "shell/file_bytes.h"
#include "totalize/report.h"

namespace recscope {

// Made by the build from resources/*ReportFormat.txt.
extern const unsigned char kDailyReportFormat[];
extern const std::size_t kDailyReportFormatSize;
extern const unsigned char kMonthlyReportFormat[];
extern const std::size_t kMonthlyReportFormatSize;
extern const unsigned char kAnnualReportFormat[];
extern const std::size_t kAnnualReportFormatSize;

std::string DeliveredReportTemplate(int type) {
  const unsigned char *bytes = kDailyReportFormat;
  std::size_t size = kDailyReportFormatSize;
  if (type == kMonthlyReport) {
    bytes = kMonthlyReportFormat;
    size = kMonthlyReportFormatSize;
  } else if (type == kAnnualReport) {
    bytes = kAnnualReportFormat;
    size = kAnnualReportFormatSize;
  }
  return std::string(reinterpret_cast<const char *>(bytes), size);
}

bool EnsureReportTemplates(const std::string &folder) {
  bool ok = true;
  for (int type : {kDailyReport, kMonthlyReport, kAnnualReport}) {
    const std::string path = folder + "/" + ReportTemplateName(type);
    std::error_code error;
    if (std::filesystem::exists(path, error)) continue;
    ok = ReplaceFileBytes(path, DeliveredReportTemplate(type)) && ok;
  }
  return ok;
}

}  // namespace recscope
