#pragma once
// A chart that remembers what it was given, for tests of the trend and history models.
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/chart_plot.h"

namespace kova::test {

class FakeChartPlot final : public ChartPlot {
  public:
    struct Curve {
        std::string name;
        std::string legend;
        std::vector<float> y;
        double xIncrement = 0;
        int replaced = 0;  // how often its points were replaced
    };
    struct XLabel {
        double x;
        std::string text;
    };

    int curveCount() const override { return static_cast<int>(curves.size()); }
    void addCurve(const std::string& name, std::span<const float> y, double inc) override {
        curves.push_back({name, "", {y.begin(), y.end()}, inc, 0});
    }
    void replaceCurve(int index, std::span<const float> y, double inc) override {
        if (index < 0 || index >= curveCount()) return;
        curves[index].y.assign(y.begin(), y.end());
        curves[index].xIncrement = inc;
        ++curves[index].replaced;
    }
    void setCurveLegend(int index, const std::string& text) override {
        if (index >= 0 && index < curveCount()) curves[index].legend = text;
    }
    void setXSpan(double last) override { xSpan = last; }
    void autoScaleY() override {
        autoY = true;
        ++autoScaleCalls;
    }
    void setYLimits(double minimum, double maximum) override {
        autoY = false;
        yLimits = std::make_pair(minimum, maximum);
    }
    int xLabelCount() const override { return static_cast<int>(xLabels.size()); }
    void removeXLabel(int index) override {
        if (index >= 0 && index < xLabelCount()) xLabels.erase(xLabels.begin() + index);
    }
    void addXLabel(double x, const std::string& text) override { xLabels.push_back({x, text}); }

    std::vector<Curve> curves;
    std::optional<double> xSpan;
    bool autoY = false;
    int autoScaleCalls = 0;
    std::optional<std::pair<double, double>> yLimits;
    std::vector<XLabel> xLabels;
};

}  // namespace kova::test
