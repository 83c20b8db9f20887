#pragma once
// The charting control the trend and history windows draw through: curves of equally
// spaced points, automatic or fixed Y limits, and text labels on the X axis. The models
// fill it; the Qt program implements it with Qt Charts; tests fake it.
#include <span>
#include <string>

namespace kova {

class ChartPlot {
  public:
    virtual ~ChartPlot() = default;

    // How many curves the chart holds (0 before the first draw).
    virtual int curveCount() const = 0;
    // A new curve: point k is at X = k * xIncrement with Y = y[k]. `y` holds only the points
    // that exist (rows read from a file, samples taken): a curve is never padded with made-up
    // zeros, and a curve with no points draws nothing and stays out of the legend.
    virtual void addCurve(const std::string& name, std::span<const float> y, double xIncrement) = 0;
    // Replaces the points of curve index (0-based); an index with no curve is ignored.
    virtual void replaceCurve(int index, std::span<const float> y, double xIncrement) = 0;
    // The text the legend shows for curve index (the pen's tag label); ignored when absent.
    virtual void setCurveLegend(int index, const std::string& text) = 0;

    // The X axis runs from 0 to `last` whatever the curves hold, so that a curve shorter than
    // the chart's width (a file's last rows, a ring not yet full) keeps the scale of a whole one.
    virtual void setXSpan(double last) = 0;

    // The Y axis fits the data of every curve.
    virtual void autoScaleY() = 0;
    // Fixed Y limits, taken as given (no check that minimum < maximum).
    virtual void setYLimits(double minimum, double maximum) = 0;

    // Text labels on the X axis.
    virtual int xLabelCount() const = 0;
    // Removes label index (0-based); a missing label is no fault.
    virtual void removeXLabel(int index) = 0;
    virtual void addXLabel(double x, const std::string& text) = 0;
};

}  // namespace kova
