#pragma once
// The "View Trends" window (ViewTrend) as a model: the chart of the current trend's four
// pens over the newest samples of the ring, redrawn every two seconds.
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/station.h"
#include "platform/chart_plot.h"

namespace kova {

inline constexpr const char* kViewTrendCaption = "View Trends";
inline constexpr const char* kViewTrendNumberHeading = "TREND";
inline constexpr const char* kViewTrendRateHeading = "Rate";
inline constexpr const char* kViewTrendRateUnit = "Seconds";
inline constexpr const char* kViewTrendAutoCaption = "Autoscale";
inline constexpr const char* kViewTrendLogCaption = "Logging Data";
inline constexpr const char* kViewTrendPrevCaption = "&Prev";
inline constexpr const char* kViewTrendNextCaption = "&Next";
inline constexpr const char* kViewTrendExitCaption = "E&xit";
inline constexpr int kViewTrendRefreshMs = 2000;
inline constexpr int kTrendPoints = 200;

struct ViewTrendForm {
    std::array<std::string, 4> Lbl1;  // pen labels: the tag's label, " " for no tag
    std::string Lbl5;                 // the trend number
    std::string Lbl4;                 // "Sample Period 500mS", "Sample Period 5Sec"
    std::string LblRate;              // measured seconds per scan
    std::string TxtLowY = "0";
    std::string TxtUpperY = "4000";
    bool ChkAuto = true;
    bool OptLog = false;  // logging switched on and writing records

    int N = kTrendPoints;        // points per pen
    double SamplePeriod = 0;     // seconds between points: the X increment
    std::int16_t TrendPage = 1;  // blocks of N samples back from the newest
    // Point 0 is the newest sample, point N - 1 the oldest.
    std::array<std::vector<float>, 4> Points;
    // How many of each pen's points (from point 0) the chart draws: samples taken of the
    // pen's tag. A pen with no tag draws none, and neither do rows the ring has not filled
    // since it was reset or since the pen changed tag.
    std::array<int, 4> Drawn{};
};

// The sample period the trends follow (the logging period or the I/O period, as the
// period settings choose): the label text and the seconds between samples.
struct TrendPeriod {
    std::string text;  // "Sample Period 500mS", "Sample Period 5Sec"
    double seconds = 0;
};
TrendPeriod TrendSamplePeriod(const Station& st);

// The label of a pen: the tag's Label, or " " when the pen has no tag (or a number no tag
// has, which is drawn as zeros).
std::string PenLabel(const Station& st, int trend, int pen);

// Load: CurrentTrend = 1 (the set-up window shares it), TrendPage 1, autoscale ticked,
// the labels filled, then the first DrawTrend.
ViewTrendForm OpenViewTrend(Station& st, ChartPlot& plot);

// One redraw: the sample period label and X increment, the N newest samples of each pen
// (newest first), the Y range (automatic, or the two limit boxes when both are numbers,
// else left as it was), and the four curves added on the first draw and replaced after.
void DrawTrend(const Station& st, ViewTrendForm& form, ChartPlot& plot);

// Timer1, every 2000 ms: the logging tick box and the rate, then DrawTrend.
void ViewTrendTick(const Station& st, ViewTrendForm& form, ChartPlot& plot);

// "&Next" / "&Prev": CurrentTrend one on or back (10 wraps to 1, 1 to 10), redrawn.
void ViewTrendNext(Station& st, ViewTrendForm& form, ChartPlot& plot);
void ViewTrendPrevious(Station& st, ViewTrendForm& form, ChartPlot& plot);

// TrendPage one block back towards the newest (never below 1), redrawn.
void TrendPageBack(const Station& st, ViewTrendForm& form, ChartPlot& plot);

}  // namespace kova
