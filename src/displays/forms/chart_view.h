#pragma once
// The charting control on Qt Charts: the chart widget the trend and history windows show,
// driven through the engine's ChartPlot seam.
#include <QChartView>
#include <QColor>
#include <vector>

#include "platform/chart_plot.h"

class QCategoryAxis;
class QLineSeries;
class QValueAxis;

namespace kova {

class ChartView final : public QChartView, public ChartPlot {
    Q_OBJECT
  public:
    explicit ChartView(QWidget* parent = nullptr);

    int curveCount() const override;
    void addCurve(const std::string& name, std::span<const float> y, double xIncrement) override;
    void replaceCurve(int index, std::span<const float> y, double xIncrement) override;
    void setCurveLegend(int index, const std::string& text) override;
    void setXSpan(double last) override;
    void autoScaleY() override;
    void setYLimits(double minimum, double maximum) override;
    int xLabelCount() const override;
    void removeXLabel(int index) override;
    void addXLabel(double x, const std::string& text) override;

    // The colour of curve index (0-based), so a window can mark its own pen labels alike.
    static QColor curveColour(int index);

    // For tests and screenshots: the series and axes as Qt holds them.
    QLineSeries* series(int index) const;
    QValueAxis* yAxis() const { return yAxis_; }
    QValueAxis* xAxis() const { return xAxis_; }
    QCategoryAxis* xLabelAxis() const { return xLabels_; }

  private:
    struct Label {
        double x;
        QString text;
    };
    void setPoints(QLineSeries* s, std::span<const float> y, double xIncrement);
    void showInLegend(int index);
    void fitX();
    void rebuildXLabels();

    std::vector<QLineSeries*> curves_;
    std::vector<signed char> inLegend_;  // per curve: 1 in the legend, 0 not, -1 not yet set
    QValueAxis* xAxis_;
    QValueAxis* yAxis_;
    QCategoryAxis* xLabels_;
    std::vector<Label> labels_;
    double xSpan_ = 0;  // 0: the X axis follows the longest curve
};

}  // namespace kova
