// The channel lines written straight into an image against the same lines drawn
// by the painter: every pixel must be the same.
#include "trend/wave_image.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <cmath>
#include <ostream>
#include <random>
#include <string>

#include "shell/shared_state.h"
#include "trend/render_request.h"
#include "trend/wave_render.h"
#include "trend_fixture.h"

namespace recscope {
namespace {

using testing_support::MakeRecord;
using testing_support::TempFolder;
using testing_support::WriteLevels;

QGuiApplication &App() {
  static int argc = 1;
  static char name[] = "wave_image_test";
  static char *argv[] = {name, nullptr};
  static QGuiApplication *app = new QGuiApplication(argc, argv);
  return *app;
}

// Number of pixels that differ, and the first of them in `where`.
long long DifferingPixels(const QImage &a, const QImage &b, std::string &where) {
  if (a.size() != b.size() || a.format() != b.format()) {
    where = "size or format";
    return -1;
  }
  long long n = 0;
  for (int y = 0; y < a.height(); ++y) {
    const quint32 *ra = reinterpret_cast<const quint32 *>(a.constScanLine(y));
    const quint32 *rb = reinterpret_cast<const quint32 *>(b.constScanLine(y));
    for (int x = 0; x < a.width(); ++x)
      if (ra[x] != rb[x]) {
        if (n == 0)
          where = "(" + std::to_string(x) + ", " + std::to_string(y) +
                  "): " + std::to_string(ra[x]) + " against " + std::to_string(rb[x]);
        ++n;
      }
  }
  return n;
}

long long DistinctColours(const QImage &image) {
  std::vector<quint32> seen;
  for (int y = 0; y < image.height(); y += 3) {
    const quint32 *row = reinterpret_cast<const quint32 *>(image.constScanLine(y));
    for (int x = 0; x < image.width(); x += 3)
      if (std::find(seen.begin(), seen.end(), row[x]) == seen.end()) seen.push_back(row[x]);
  }
  return static_cast<long long>(seen.size());
}

// A painter set up as the trend draws its plot: twips scaled to pixels, the
// origin moved to a box, clipped to it.
struct Surface {
  QImage image;
  double scale;
  QRect box;  // in the painter's units before the move
  Surface(int w, int h, double s, QRect b, QImage::Format format = QImage::Format_RGB32)
      : image(w, h, format), scale(s), box(b) {
    image.fill(QColor(250, 250, 250));
  }
  template <typename Draw>
  void Paint(Draw draw) {
    QPainter painter(&image);
    painter.scale(scale, scale);
    painter.fillRect(box, QColor(255, 255, 255));
    painter.translate(box.left(), box.top());
    painter.setClipRect(QRect(0, 0, box.width(), box.height()));
    draw(painter);
  }
};

void Plain(QPainter &painter, const std::vector<WaveLines> &channels) {
  for (const WaveLines &ch : channels) {
    painter.setPen(QPen(ch.colour, 0));
    painter.drawLines(ch.lines.data(), static_cast<int>(ch.lines.size()));
  }
}

// Random channels of envelope-like lines (along y or x), lines between them, single
// points, lines reaching out of the box and out of the image.
std::vector<WaveLines> RandomChannels(std::mt19937 &rng, int count, int linesEach, QSize extent,
                                      bool columns) {
  std::uniform_int_distribution<int> along(-400,
                                           (columns ? extent.height() : extent.width()) + 400);
  std::uniform_int_distribution<int> across(-400,
                                            (columns ? extent.width() : extent.height()) + 400);
  std::uniform_int_distribution<int> small(-60, 60);
  std::uniform_int_distribution<int> kind(0, 9);
  std::uniform_int_distribution<int> byte(0, 255);
  std::vector<WaveLines> channels;
  for (int c = 0; c < count; ++c) {
    WaveLines ch;
    ch.colour = QColor(byte(rng), byte(rng), byte(rng));
    for (int i = 0; i < linesEach; ++i) {
      int k = kind(rng), at = across(rng), a = along(rng), b = along(rng);
      if (k == 0) b = a;               // a point
      if (k == 1) b = a + small(rng);  // a short envelope
      if (k <= 5) {
        if (columns)
          ch.lines.emplace_back(at, a, at, b);
        else
          ch.lines.emplace_back(a, at, b, at);
      } else if (k <= 8) {
        int d = small(rng);
        if (columns)
          ch.lines.emplace_back(at, a, at + d, a + small(rng) * 5);
        else
          ch.lines.emplace_back(a, at, a + small(rng) * 5, at + d);
      } else {
        ch.lines.emplace_back(across(rng), along(rng), across(rng), along(rng));
      }
    }
    channels.push_back(std::move(ch));
  }
  return channels;
}

// Full-height envelopes at every column for several channels, the heaviest
// picture: most lines lie under later channels.
std::vector<WaveLines> NoiseChannels(std::mt19937 &rng, int count, int columns, int pitch,
                                     int height, bool vertical) {
  std::uniform_int_distribution<int> edge(0, 40);
  std::uniform_int_distribution<int> byte(0, 255);
  std::vector<WaveLines> channels;
  for (int c = 0; c < count; ++c) {
    WaveLines ch;
    ch.colour = QColor(byte(rng), byte(rng), byte(rng));
    int prev = 0, prevMid = 0;
    for (int i = 0; i < columns; ++i) {
      int x = i * pitch;
      int top = edge(rng), bottom = height - 30 - edge(rng);
      int mid = (top + bottom) / 2 + edge(rng) - 20;
      if (vertical) {
        ch.lines.emplace_back(top, x, bottom, x);
        if (i > 0) ch.lines.emplace_back(prevMid, prev, mid, x);
      } else {
        ch.lines.emplace_back(x, top, x, bottom);
        if (i > 0) ch.lines.emplace_back(prev, prevMid, x, mid);
      }
      prev = x;
      prevMid = mid;
    }
    channels.push_back(std::move(ch));
  }
  return channels;
}

void ExpectSamePixels(const std::vector<WaveLines> &channels, double scale, QRect box, QSize size,
                      WaveImageCounts *countsOut = nullptr,
                      QImage::Format format = QImage::Format_RGB32) {
  Surface plain(size.width(), size.height(), scale, box, format);
  Surface fast(size.width(), size.height(), scale, box, format);
  plain.Paint([&](QPainter &p) { Plain(p, channels); });
  bool drawn = false;
  WaveImageCounts counts;
  fast.Paint([&](QPainter &p) { drawn = DrawWavesOnImage(p, channels, &counts); });
  ASSERT_TRUE(drawn);
  std::string where;
  EXPECT_EQ(DifferingPixels(fast.image, plain.image, where), 0) << "first at " << where;
  if (countsOut) *countsOut = counts;
}

TEST(WaveImage, RandomLinesMatchThePainterAtManyOffsetsAndScales) {
  App();
  std::mt19937 rng(7);
  std::uniform_int_distribution<int> offset(0, 400);
  const double scales[] = {1.0 / 15, 1.0, 2.0 / 15, 1.0 / 7};
  for (double scale : scales)
    for (int round = 0; round < 12; ++round) {
      const bool columns = round % 2 == 0;
      QSize size(320, 200);
      // The box's edges fall at every fraction of a pixel.
      const int most = std::max(2, static_cast<int>(30 / scale));
      int left = offset(rng) % most, top = offset(rng) % most;
      QRect box(left, top,
                static_cast<int>((size.width() - 10) / scale) - left - offset(rng) % most,
                static_cast<int>((size.height() - 10) / scale) - top - offset(rng) % most);
      auto channels = RandomChannels(rng, 6, 300, box.size(), columns);
      SCOPED_TRACE("scale " + std::to_string(scale) + " round " + std::to_string(round));
      // Both 32-bit formats the path takes.
      ExpectSamePixels(channels, scale, box, size, nullptr,
                       round % 3 == 0 ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    }
}

TEST(WaveImage, FullHeightEnvelopesAreMostlyLeftOutYetMatch) {
  App();
  std::mt19937 rng(11);
  for (bool vertical : {false, true}) {
    QSize size(400, 300);
    // Twips as the trend draws them: 15 to a pixel, the plot's box at odd twips.
    QRect box(1037, 611, vertical ? 4200 : 5000, vertical ? 3600 : 3100);
    int span = vertical ? box.height() : box.width();
    int height = vertical ? box.width() : box.height();
    for (int pitch : {15, 7, 31}) {
      auto channels = NoiseChannels(rng, 9, span / pitch, pitch, height, vertical);
      WaveImageCounts counts;
      SCOPED_TRACE(std::string(vertical ? "vertical" : "horizontal") + " pitch " +
                   std::to_string(pitch));
      ExpectSamePixels(channels, 1.0 / 15, box, size, &counts);
      // Columns a pixel or less apart: the lines between them lie under the
      // envelopes of the channels drawn later (or their own).
      if (pitch <= 15) {
        EXPECT_GT(counts.culled, 0);
      }
      EXPECT_GT(counts.pixelsWritten, 0);
    }
  }
}

TEST(WaveImage, OtherDevicesAndStatesAreLeftToThePainter) {
  App();
  std::mt19937 rng(3);
  auto channels = RandomChannels(rng, 2, 20, QSize(1000, 1000), true);
  QImage argb(100, 100, QImage::Format_ARGB32);
  {
    QPainter painter(&argb);
    EXPECT_FALSE(DrawWavesOnImage(painter, channels));
  }
  QImage image(100, 100, QImage::Format_RGB32);
  {
    QPainter painter(&image);
    painter.rotate(10);
    EXPECT_FALSE(DrawWavesOnImage(painter, channels));
  }
  {
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, true);
    EXPECT_FALSE(DrawWavesOnImage(painter, channels));
  }
}

// Trend views drawn whole, once with the lines written into the image and once
// all through the painter.
struct Records {
  TempFolder home;
  SharedState state;
  Records() {
    state.ProgramFolder = home.str();
    // Slot 1: 72 channels of noise over the whole scale, 40,000 records.
    RecordFileInfo noise = MakeRecord(40000, 72, 0, 1700000000, 1);
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> value(0, 1000);
    std::vector<std::int16_t> values(static_cast<std::size_t>(40000) * 72);
    for (auto &v : values) v = static_cast<std::int16_t>(value(rng));
    WriteLevels(noise, home.str(), 1, [&](std::int64_t r, int c) {
      std::int16_t v = values[static_cast<std::size_t>(r) * 72 + c];
      return std::make_pair(v, v);
    });
    state.Slot(1).Record = noise;
    state.Slot(1).SamplePeriod = 1;
    // Slot 2: 10 channels of slow waves, 20,000 records.
    RecordFileInfo gentle = MakeRecord(20000, 10, 0, 1700000000, 1);
    WriteLevels(gentle, home.str(), 2, [](std::int64_t r, int c) {
      double v = 500 + 400 * std::sin(2 * M_PI * (c % 5 + 2) * r / 20000.0 + c);
      std::int16_t lo = static_cast<std::int16_t>(v), hi = static_cast<std::int16_t>(v + 3);
      return std::make_pair(lo, hi);
    });
    state.Slot(2).Record = gentle;
    state.Slot(2).SamplePeriod = 1;
  }
};

Records &Data() {
  static Records *records = new Records;
  return *records;
}

struct ViewCase {
  const char *name;
  int slot;
  int group;
  bool horizontal;
  int waveMode;
  bool pastEnd;
  double ratio;
};

void PrintTo(const ViewCase &v, std::ostream *os) { *os << v.name; }

class WaveImageView : public ::testing::TestWithParam<ViewCase> {};

TEST_P(WaveImageView, SamePixelsAsThePainter) {
  App();
  const ViewCase &v = GetParam();
  RenderRequest request;
  request.state = &Data().state;
  request.slot = v.slot;
  request.widthPx = v.ratio == 1.0 ? 1920 : 960;
  request.heightPx = v.ratio == 1.0 ? 1080 : 540;
  request.group = v.group;
  request.horizontal = v.horizontal;
  request.waveMode = v.waveMode;
  const RecordFileInfo &info = Data().state.Slot(v.slot).Record;
  if (v.pastEnd) {
    request.from = info.LastTime - 3000;
    request.to = info.LastTime + 3000;
  }
  // At a device pixel ratio other than 1, Picture2 alone, as the window draws it
  // for a high-density screen.
  auto render = [&] {
    if (v.ratio == 1.0) return RenderTrendImage(request);
    TrendView view;
    TrendLayout layout;
    PrepareRenderView(request, view, layout);
    ReduceForLayout(request, view, layout);
    TrendScene scene = SlotScene(*request.state, request.slot, view, layout);
    return DrawTrendImage(scene, v.ratio);
  };
  SetWaveDrawPath(WaveDrawPath::Fastest);
  QImage fast = render();
  const bool usedImage = LastWaveUsedImagePath();
  const WaveImageCounts counts = LastWaveImageCounts();
  SetWaveDrawPath(WaveDrawPath::Painter);
  QImage plain = render();
  const bool plainUsedImage = LastWaveUsedImagePath();
  SetWaveDrawPath(WaveDrawPath::Fastest);

  ASSERT_TRUE(usedImage);
  EXPECT_FALSE(plainUsedImage);
  // Envelopes are written as spans; mid lines alone are mostly lit one by one.
  if (v.waveMode == 1) {
    EXPECT_GT(counts.pixelsWritten, 0);
  } else {
    EXPECT_GT(counts.lit, 0);
  }
  // A picture with channel lines on it, not an empty frame.
  EXPECT_GT(DistinctColours(plain), 5);
  std::string where;
  EXPECT_EQ(DifferingPixels(fast, plain, where), 0) << "first at " << where;
  if (::testing::Test::HasFailure()) {
    fast.save(QString::fromUtf8(RECSCOPE_BINARY_DIR "/wave_image_") + v.name + "_fast.png");
    plain.save(QString::fromUtf8(RECSCOPE_BINARY_DIR "/wave_image_") + v.name + "_plain.png");
  }
}

INSTANTIATE_TEST_SUITE_P(
    Views, WaveImageView,
    ::testing::Values(ViewCase{"noise10_hori_M", 1, 1, true, 1, false, 1.0},
                      ViewCase{"noise72_hori_M", 1, 9, true, 1, false, 1.0},
                      ViewCase{"noise72_vert_M", 1, 9, false, 1, false, 1.0},
                      ViewCase{"noise10_vert_M", 1, 1, false, 1, false, 1.0},
                      ViewCase{"noise10_hori_A", 1, 1, true, 2, false, 1.0},
                      ViewCase{"noise72_vert_A", 1, 9, false, 2, false, 1.0},
                      ViewCase{"gentle_hori_M", 2, 1, true, 1, false, 1.0},
                      ViewCase{"gentle_vert_M", 2, 1, false, 1, false, 1.0},
                      ViewCase{"gentle_hori_A", 2, 1, true, 2, false, 1.0},
                      ViewCase{"noise10_past_end_hori_M", 1, 1, true, 1, true, 1.0},
                      ViewCase{"noise72_past_end_vert_M", 1, 9, false, 1, true, 1.0},
                      ViewCase{"noise10_hori_M_ratio2", 1, 1, true, 1, false, 2.0},
                      ViewCase{"noise72_vert_M_ratio1_5", 1, 9, false, 1, false, 1.5}),
    [](const ::testing::TestParamInfo<ViewCase> &info) { return std::string(info.param.name); });

}  // namespace
}  // namespace recscope
