#include "print/page_draw.h"

#include <QDateTime>
#include <QFontMetricsF>
#include <QPageLayout>
#include <QPdfWriter>
#include <algorithm>
#include <cmath>

#include "shell/catalogue.h"
#include "shell/civil_time.h"
#include "trend/colour_table.h"
#include "trend/display_reduction.h"
#include "trend/render_request.h"
#include "trend/scale_panel.h"
#include "trend/time_axis.h"
#include "trend/wave_render.h"

namespace recscope {

namespace {

constexpr double kTwipsPerInch = 1440.0;
constexpr double kTwipsPerPoint = 20.0;
constexpr double kLabelRoom = 1700.0;
constexpr int kPrintDateLabel = 15000;

QString Q(const std::string &text) { return QString::fromStdString(text); }

// A line width of 1 is one screen pixel.
QPen LinePen(const QColor &colour, int width) {
  QPen pen(colour, std::max(width, 0) * kTwipsPerPixel);
  pen.setCapStyle(Qt::FlatCap);
  return pen;
}

QFont PageFont(const PrintPageScene &page, bool bold = false) {
  QFont font = TrendFont(page.geometry->FontSize);
  font.setBold(bold);
  return font;
}

QRectF RectOf(const PageRect &r) { return QRectF(r.Left, r.Top, r.Width, r.Height); }

Box BoxOf(const PageRect &r) {
  return {static_cast<std::int32_t>(std::lround(r.Left)),
          static_cast<std::int32_t>(std::lround(r.Top)),
          static_cast<std::int32_t>(std::lround(r.Width)),
          static_cast<std::int32_t>(std::lround(r.Height))};
}

std::int32_t TickStep(std::int64_t span, std::int64_t labels) {
  for (std::int32_t entry : IntervalTable)
    if (span / entry <= labels) return entry;
  return IntervalTable.back();
}

// Position of a time along the plot's time axis from its start edge: left to
// right on the horizontal form, bottom to top on the vertical one, as on screen.
double Along(const PrintPageScene &page, std::int64_t t) {
  const double pos = TimeToPosition(page.view, t);
  return page.geometry->Horizontal ? pos : page.view.PlotSpan - pos;
}

// The grid's ticks of the page: the times inside the range at the step that lets
// their texts stand apart.
std::vector<std::int64_t> Ticks(const PrintPageScene &page) {
  std::vector<std::int64_t> out;
  const TrendView &v = page.view;
  const std::int64_t labels =
      static_cast<std::int64_t>((page.geometry->ChartLength - kLabelRoom) / kLabelRoom);
  if (labels < 2 || v.DisplayEnd <= v.DisplayStart) return out;
  const std::int64_t span = static_cast<std::int64_t>(v.DisplayEnd) - v.DisplayStart;
  const std::int32_t step = TickStep(span, labels);
  for (std::int64_t t = (v.DisplayStart / step + 1) * static_cast<std::int64_t>(step);
       t < v.DisplayEnd && out.size() <= static_cast<std::size_t>(labels); t += step)
    out.push_back(t);
  return out;
}

std::string TimeText(const PrintPageScene &page, std::int64_t t) {
  return FormatTime(t, page.source->state->DateFormatNo);
}

bool MarkOnPage(const PrintPageScene &page, const ListMark &mark) {
  return mark.Set && mark.Time >= page.view.DisplayStart && mark.Time <= page.view.DisplayEnd &&
         page.view.DisplayEnd > page.view.DisplayStart;
}

void HeaderBlock(QPainter &painter, const PrintPageScene &page) {
  const PageGeometry &g = *page.geometry;
  const PrintSource &source = *page.source;
  const RecordSlot &slot = source.state->Slot(source.slot);
  painter.setPen(QPen(Qt::black, 0));
  painter.setFont(PageFont(page));
  PrintText(painter, g.DateLabelX, g.DateY, Q(GetMessageText(kPrintDateLabel)));
  PrintText(painter, g.DateX, g.DateY, Q(source.printedDate));
  PrintText(painter, g.TimeX, g.DateY, Q(source.printedTime));
  painter.setFont(TrendFont(g.TitleFontSize));
  PrintText(painter, g.TitleX, g.TitleY, Q(source.view.PrintTitle));
  const std::vector<InfoRow> rows =
      HeaderInfoRows(slot.Record, source.view, slot.Period(), source.state->DateFormatNo);
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const double y = g.InfoTop + static_cast<double>(i) * g.InfoStep;
    painter.setFont(PageFont(page, true));
    PrintText(painter, g.InfoLabelX, y, Q(rows[i].Label));
    painter.setFont(PageFont(page));
    PrintText(painter, g.InfoColonX, y, QStringLiteral(":"));
    PrintText(painter, g.InfoValueX, y, Q(rows[i].Value));
  }
}

void ListBlockDraw(QPainter &painter, const PrintPageScene &page) {
  const PageGeometry &g = *page.geometry;
  const PrintSource &source = *page.source;
  const RecordSlot &slot = source.state->Slot(source.slot);
  const ListBlock &list = g.List;
  const std::vector<ListRow> rows =
      ListRows(slot.Record, page.view, page.marks, slot.Period(), source.state->ProgramFolder,
               source.slot, source.state->DecimalChar);
  painter.setPen(QPen(Qt::black, 0));
  auto heads = [&](const std::array<double, 4> &x) {
    painter.setFont(PageFont(page, true));
    PrintText(painter, x[0], list.HeadTop, QStringLiteral("No"));
    PrintText(painter, x[1], list.HeadTop, QStringLiteral("TAG"));
    for (std::size_t m = 0; m < 2; ++m)
      if (page.marks[m].Set) PrintText(painter, x[2 + m], list.HeadTop, Q(page.marks[m].Label));
  };
  heads(list.Left);
  if (list.DoubleList && static_cast<int>(rows.size()) > list.RowsPerColumn) heads(list.Right);
  painter.setFont(PageFont(page));
  for (std::size_t r = 0; r < rows.size(); ++r) {
    const ListRowPlace place = ListRowAt(list, static_cast<int>(r));
    const std::array<double, 4> &x = place.RightHalf ? list.Right : list.Left;
    PrintText(painter, x[0], place.Top, Q(rows[r].Number));
    PrintText(painter, x[1], place.Top, Q(rows[r].Tag));
    PrintText(painter, x[2], place.Top, Q(rows[r].Values[0]));
    PrintText(painter, x[3], place.Top, Q(rows[r].Values[1]));
  }
}

void ScaleBlock(QPainter &painter, const PrintPageScene &page) {
  const PageGeometry &g = *page.geometry;
  for (std::size_t i = 0; i < g.ScalePanels.size() && i < 3; ++i) {
    const PageRect &panel = g.ScalePanels[i];
    painter.save();
    painter.translate(panel.Left, panel.Top);
    if (g.Horizontal) painter.scale(g.PanelSqueeze, 1.0);
    painter.setClipRect(QRectF(0, 0, panel.Width, panel.Height));
    DrawScalePanel(painter, page.scene, static_cast<int>(i));
    painter.restore();
  }
}

// A line across the plot at `along` on its time axis: top to bottom on the
// horizontal form, left to right on the vertical one.
void LineAcross(QPainter &painter, const PageRect &plot, double along, bool horizontal) {
  if (horizontal)
    painter.drawLine(QLineF(plot.Left + along, plot.Top, plot.Left + along, plot.Bottom()));
  else
    painter.drawLine(QLineF(plot.Left, plot.Top + along, plot.Right(), plot.Top + along));
}

void TimeLines(QPainter &painter, const PrintPageScene &page, bool horizontal) {
  const PageRect &plot = page.geometry->Plot;
  painter.save();
  painter.setClipRect(RectOf(plot));
  painter.setPen(LinePen(ColourOfText(page.view.GridColor), page.source->config.MLINE));
  for (std::int64_t t : Ticks(page)) {
    LineAcross(painter, plot, Along(page, t), horizontal);
  }
  painter.restore();
}

void TimeTexts(QPainter &painter, const PrintPageScene &page, bool horizontal) {
  const PageGeometry &g = *page.geometry;
  const PageRect &plot = g.Plot;
  painter.setPen(QPen(Qt::black, 0));
  painter.setFont(PageFont(page));
  QFontMetricsF metrics(painter.font());
  std::vector<QRectF> placed;
  auto put = [&](std::int64_t t, bool always) {
    const QString text = Q(TimeText(page, t));
    const double h = metrics.height();
    const double along = Along(page, t);
    // The vertical form's margin is narrower than a whole time text: the date
    // stands over the time of day there, both ending at the margin's right.
    QStringList lines{text};
    if (!horizontal && text.contains(QLatin1Char(' '))) {
      const int space = static_cast<int>(text.lastIndexOf(QLatin1Char(' ')));
      lines = QStringList{text.left(space), text.mid(space + 1)};
    }
    double w = 0;
    for (const QString &line : lines) w = std::max(w, metrics.horizontalAdvance(line));
    const double height = h * static_cast<double>(lines.size());
    QRectF box;
    if (horizontal) {
      double x = plot.Left + along - w / 2;
      x = std::clamp(x, 0.0, g.Width - w);
      box = QRectF(x, g.TimeTextY, w, height);
    } else {
      double y = plot.Top + along - height / 2;
      y = std::clamp(y, plot.Top - height / 2, plot.Bottom() - height / 2);
      box = QRectF(std::max(0.0, g.TimeTextRight - w), y, w, height);
    }
    for (const QRectF &other : placed)
      if (!always && box.adjusted(-50, -20, 50, 20).intersects(other)) return;
    placed.push_back(box);
    for (int i = 0; i < lines.size(); ++i) {
      const double lineWidth = metrics.horizontalAdvance(lines[i]);
      const double x = horizontal ? box.left() : box.right() - lineWidth;
      PrintText(painter, x, box.top() + i * h, lines[i]);
    }
  };
  const TrendView &v = page.view;
  put(v.DisplayStart, true);
  if (v.DisplayEnd > v.DisplayStart) put(v.DisplayEnd, true);
  for (std::int64_t t : Ticks(page)) put(t, false);
}

void MarkLines(QPainter &painter, const PrintPageScene &page, bool horizontal) {
  const PageRect &plot = page.geometry->Plot;
  painter.save();
  painter.setPen(LinePen(QColor(kCursorColour.r, kCursorColour.g, kCursorColour.b),
                         std::max(page.source->config.MLINE, 1)));
  for (const ListMark &mark : page.marks) {
    if (!MarkOnPage(page, mark)) continue;
    LineAcross(painter, plot, Along(page, mark.Time), horizontal);
  }
  painter.restore();
}

// The texts of the marks: "ｶｰｿﾙ1:" and the time, one row each in the band over
// the frame, and the mark's number beside its line.
void MarkTexts(QPainter &painter, const PrintPageScene &page, bool horizontal) {
  const PageGeometry &g = *page.geometry;
  const PageRect &plot = g.Plot;
  painter.setPen(QPen(Qt::black, 0));
  painter.setFont(PageFont(page));
  QFontMetricsF metrics(painter.font());
  for (std::size_t m = 0; m < 2; ++m) {
    const ListMark &mark = page.marks[m];
    if (!mark.Set) continue;
    const QString text = Q(mark.Label + TimeText(page, mark.Time));
    const double y = g.CursorBand.Top + 40 + static_cast<double>(m) * g.InfoStep;
    const double w = metrics.horizontalAdvance(text);
    const bool onPage = MarkOnPage(page, mark);
    const QString number = QString::number(m + 1);
    if (horizontal) {
      double x = onPage ? plot.Left + Along(page, mark.Time) + 60 : plot.Left;
      if (x + w > g.Width - 100) x = std::max(0.0, x - 120 - w);
      PrintText(painter, x, y, text);
      if (onPage)
        PrintText(painter,
                  plot.Left + Along(page, mark.Time) - metrics.horizontalAdvance(number) / 2,
                  g.Frame.Top - metrics.height() - 10, number);
    } else {
      PrintText(painter, plot.Left + static_cast<double>(m) * plot.Width / 2, y, text);
      if (onPage)
        PrintText(painter, g.Frame.Right() + 60,
                  plot.Top + Along(page, mark.Time) - metrics.height() / 2, number);
    }
  }
}

void Frame(QPainter &painter, const PrintPageScene &page) {
  painter.save();
  painter.setPen(LinePen(Qt::black, std::max(page.source->config.WLINE, 1)));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(RectOf(page.geometry->Frame));
  painter.restore();
}

void Waves(QPainter &painter, const PrintPageScene &page, bool horizontal) {
  if (!page.hasData) return;
  const PageRect &plot = page.geometry->Plot;
  const TrendGroup &group = page.view.Group();
  painter.save();
  painter.translate(plot.Left, plot.Top);
  painter.setClipRect(QRectF(0, 0, plot.Width, plot.Height));
  std::vector<QLine> lines;
  for (int place = 1; place <= static_cast<int>(group.ChannelNo.size()); ++place) {
    if (group.ChannelNo[place - 1] == 0 || group.ChannelOn[place - 1] == 0) continue;
    if (horizontal)
      WaveLinesHori(page.scene, place, lines);
    else
      WaveLinesVert(page.scene, place, lines);
    if (lines.empty()) continue;
    QPen pen = LinePen(ColourOfText(group.ChannelColor[place - 1]), page.source->config.DLINE);
    pen.setCapStyle(Qt::RoundCap);
    painter.setPen(pen);
    painter.drawLines(lines.data(), static_cast<int>(lines.size()));
  }
  painter.restore();
}

}  // namespace

PrintPlan PlanPrint(const PrintSource &source) {
  PrintPlan plan;
  const RecordSlot &slot = source.state->Slot(source.slot);
  const TrendView &v = source.view;
  const int channels = static_cast<int>(ListedChannels(v).size());
  plan.geometry = LayoutPage(source.config.PaperCode, source.config.Orientation, v.CurrentGroup,
                             channels, v.Group().ShownScales);
  plan.pages = PlanPages(source.config, v.DisplayStart, v.DisplayEnd, slot.Record.LastTime);
  return plan;
}

PrintPageScene MakePageScene(const PrintSource &source, const PrintPlan &plan, int page) {
  PrintPageScene out;
  out.source = &source;
  out.geometry = &plan.geometry;
  out.range = plan.pages.at(static_cast<std::size_t>(page));
  const PageGeometry &g = plan.geometry;
  const RecordSlot &slot = source.state->Slot(source.slot);
  const RecordFileInfo &info = slot.Record;

  TrendView &view = out.view;
  view = source.view;
  view.DisplayStart = out.range.Start;
  view.DisplayEnd = out.range.End;
  view.ColumnPitch = 15;
  view.PlotShift = 0;
  // The trend's scales and waves place a zone as the window does, where the plot
  // starts kPlotOffset into Picture2 across the time axis; the page's chart is laid
  // out the same way and moved onto the paper when it is drawn (ChartOrigin).
  const std::int32_t extent =
      static_cast<std::int32_t>(std::lround(g.Horizontal ? g.Plot.Height : g.Plot.Width));
  ResizeZones(view, source.zonePlotOrigin, source.zonePlotExtent, kPlotOffset, extent);
  out.hasData = info.InUse != 0 && out.range.End >= info.FirstTime &&
                out.range.Start <= info.LastTime && out.range.End > out.range.Start;
  if (out.hasData) {
    ReduceDisplayData(view, info, slot.Period(), static_cast<std::int32_t>(g.ChartLength),
                      source.state->ProgramFolder, source.slot);
    out.hasData = view.DataColumnCount > 0;
  } else {
    view.PlotSpan = static_cast<std::int32_t>(g.ChartLength);
    view.DataColumnCount = 0;
  }

  TrendScene &scene = out.scene;
  scene = SlotScene(*source.state, source.slot, out.view, TrendLayout());
  scene.view = &out.view;
  TrendLayout &layout = scene.layout;
  layout.horizontal = g.Horizontal;
  layout.formWidth = static_cast<std::int32_t>(g.Width);
  layout.formHeight = kFirstHeight;
  layout.Picture2 = {0, 0, static_cast<std::int32_t>(g.Width), static_cast<std::int32_t>(g.Height)};
  const Box plot = BoxOf(g.Plot);
  layout.Picture1 = g.Horizontal ? Box{0, kPlotOffset, plot.Width, plot.Height}
                                 : Box{kPlotOffset, 0, plot.Width, plot.Height};
  for (std::size_t i = 0; i < g.ScalePanels.size() && i < 3; ++i) {
    const Box panel = BoxOf(g.ScalePanels[i]);
    layout.Picture3[i] = g.Horizontal ? Box{0, kPlotOffset, panel.Width, panel.Height}
                                      : Box{kPlotOffset, 0, panel.Width, panel.Height};
  }
  scene.scaleLineWidth = std::max(source.config.SLINE, 0) * kTwipsPerPixel;
  scene.gridLineWidth = std::max(source.config.MLINE, 0) * kTwipsPerPixel;

  out.marks = ListMarks(view, slot.Flags, source.config.CURSOR, out.range.Start, out.range.End);
  return out;
}

void BeforeDisp(QPainter &painter, const PrintPageScene &page) {
  HeaderBlock(painter, page);
  if (!page.hasData) return;
  ListBlockDraw(painter, page);
  ScaleBlock(painter, page);
}

void LengthLineDisp(QPainter &painter, const PrintPageScene &page) {
  TimeLines(painter, page, true);
}
void LengthLineDisp_Ver(QPainter &painter, const PrintPageScene &page) {
  TimeLines(painter, page, false);
}
void TimeDataDisp(QPainter &painter, const PrintPageScene &page) { TimeTexts(painter, page, true); }
void TimeDataDisp_Ver(QPainter &painter, const PrintPageScene &page) {
  TimeTexts(painter, page, false);
}

void WidthLineDisp(QPainter &painter, const PrintPageScene &page) {
  painter.save();
  const Box &p1 = page.scene.layout.Picture1;
  painter.translate(page.geometry->Plot.Left - p1.Left, page.geometry->Plot.Top - p1.Top);
  DrawValueGrid(painter, page.scene);
  painter.restore();
}
void WidthLineDisp_Ver(QPainter &painter, const PrintPageScene &page) {
  WidthLineDisp(painter, page);  // the scene's layout knows the form
}

void WakuDisp(QPainter &painter, const PrintPageScene &page) { Frame(painter, page); }
void WakuDisp_Ver(QPainter &painter, const PrintPageScene &page) { Frame(painter, page); }
void WaveDisp2(QPainter &painter, const PrintPageScene &page) { Waves(painter, page, true); }
void WaveDisp2_Ver(QPainter &painter, const PrintPageScene &page) { Waves(painter, page, false); }
void CursorLineDisp(QPainter &painter, const PrintPageScene &page) {
  MarkLines(painter, page, true);
}
void CursorLineDisp_Ver(QPainter &painter, const PrintPageScene &page) {
  MarkLines(painter, page, false);
}
void CursorDataDisp(QPainter &painter, const PrintPageScene &page) {
  MarkTexts(painter, page, true);
}
void CursorDataDisp_Ver(QPainter &painter, const PrintPageScene &page) {
  MarkTexts(painter, page, false);
}
void AllCursorLineDisp(QPainter &painter, const PrintPageScene &page) {
  CursorLineDisp(painter, page);
  CursorDataDisp(painter, page);
}
void AllCursorLineDisp_Ver(QPainter &painter, const PrintPageScene &page) {
  CursorLineDisp_Ver(painter, page);
  CursorDataDisp_Ver(painter, page);
}

void DrawPrintPage(QPainter &painter, const PrintSource &source, const PrintPlan &plan, int page) {
  if (!source.state || page < 0 || page >= static_cast<int>(plan.pages.size())) return;
  const PrintPageScene scene = MakePageScene(source, plan, page);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, true);
  painter.setRenderHint(QPainter::TextAntialiasing, true);
  painter.scale(plan.geometry.PaperScale, plan.geometry.PaperScale);
  // 1 to 3: header, list and scale blocks.
  BeforeDisp(painter, scene);
  if (plan.geometry.Horizontal) {
    if (scene.hasData) {
      LengthLineDisp(painter, scene);
      TimeDataDisp(painter, scene);
      WidthLineDisp(painter, scene);
    }
    WakuDisp(painter, scene);
    if (scene.hasData) {
      WaveDisp2(painter, scene);
      AllCursorLineDisp(painter, scene);
    }
  } else {
    if (scene.hasData) {
      LengthLineDisp_Ver(painter, scene);
      TimeDataDisp_Ver(painter, scene);
      WidthLineDisp_Ver(painter, scene);
    }
    WakuDisp_Ver(painter, scene);
    if (scene.hasData) {
      WaveDisp2_Ver(painter, scene);
      AllCursorLineDisp_Ver(painter, scene);
    }
  }
  painter.restore();
}

QImage DrawPrintPageImage(const PrintSource &source, const PrintPlan &plan, int page,
                          double pixelsPerTwip) {
  const PageExtent paper = plan.geometry.OnPaper();
  const int w = std::max(1, static_cast<int>(std::ceil(paper.Width * pixelsPerTwip)));
  const int h = std::max(1, static_cast<int>(std::ceil(paper.Height * pixelsPerTwip)));
  QImage image(w, h, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.scale(pixelsPerTwip, pixelsPerTwip);
  DrawPrintPage(painter, source, plan, page);
  return image;
}

int PrinterPaperCode(const QPageSize &size) { return size.isValid() ? size.windowsId() : 0; }

QPageSize PrinterPageSize(int paperCode) {
  if (paperCode <= 0) return {};
  const QPageSize::PageSizeId id = QPageSize::id(paperCode);
  if (id == QPageSize::Custom) return {};
  return QPageSize(id);
}

QPageLayout::Orientation PageOrientationOf(int orientation) {
  return orientation == kLandscape ? QPageLayout::Landscape : QPageLayout::Portrait;
}

int OrientationCodeOf(QPageLayout::Orientation orientation) {
  return orientation == QPageLayout::Landscape ? kLandscape : kPortrait;
}

void SetPrintPage(QPagedPaintDevice &device, const QPageSize &sheet, int paperCode,
                  int orientation) {
  const QPageLayout::Orientation turn = PageOrientationOf(orientation);
  const PageExtent printable = PrintablePage(paperCode, orientation);
  QSizeF points = sheet.size(QPageSize::Point);
  if (turn == QPageLayout::Landscape) points.transpose();
  const double mx = std::max(0.0, (points.width() - printable.Width / kTwipsPerPoint) / 2);
  const double my = std::max(0.0, (points.height() - printable.Height / kTwipsPerPoint) / 2);
  device.setPageLayout(QPageLayout(sheet, turn, QMarginsF(mx, my, mx, my), QPageLayout::Point));
}

bool PaintPrint(QPagedPaintDevice &device, const PrintSource &source, const PrintPlan &plan) {
  QPainter painter;
  if (!painter.begin(&device)) return false;
  const double unitsPerTwip = device.logicalDpiX() / kTwipsPerInch;
  for (int page = 0; page < static_cast<int>(plan.pages.size()); ++page) {
    if (page > 0 && !device.newPage()) return false;
    painter.save();
    painter.scale(unitsPerTwip, unitsPerTwip);
    DrawPrintPage(painter, source, plan, page);
    painter.restore();
  }
  return painter.end();
}

bool WritePrintPdf(const std::string &path, const PrintSource &source, const PrintPlan &plan) {
  QPdfWriter writer(QString::fromStdString(path));
  writer.setResolution(600);
  writer.setCreator(QStringLiteral("Recscope"));
  // A code that names no paper prints on A4, as its scale does.
  QPageSize sheet = PrinterPageSize(source.config.PaperCode);
  if (!sheet.isValid()) sheet = QPageSize(QPageSize::A4);
  SetPrintPage(writer, sheet, source.config.PaperCode, source.config.Orientation);
  return PaintPrint(writer, source, plan);
}

PrintSource SlotPrintSource(const SharedState &state, int slot, const TrendView &view,
                            std::int32_t zonePlotOrigin, std::int32_t zonePlotExtent) {
  PrintSource source;
  source.state = &state;
  source.slot = slot;
  source.view = view;
  source.zonePlotOrigin = zonePlotOrigin;
  source.zonePlotExtent = zonePlotExtent;
  source.config = state.Print;
  const QDateTime now = QDateTime::currentDateTime();
  source.printedDate = now.toString(QStringLiteral("yyyy/MM/dd")).toStdString();
  source.printedTime = now.toString(QStringLiteral("HH:mm:ss")).toStdString();
  return source;
}

}  // namespace recscope
