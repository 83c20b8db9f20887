#include "core/forms/fixed_pitch_font.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QStringList>

namespace kova::forms {

namespace {

QFont request(const QString& family, int pointSize) {
    QFont f(family);
    f.setStyleHint(QFont::TypeWriter);
    f.setFixedPitch(true);
    if (pointSize > 0) f.setPointSize(pointSize);
    return f;
}

bool resolvesFixed(const QFont& f) {
    return QFontInfo(f).fixedPitch();
}

}  // namespace

QFont FixedPitchFont(int pointSize) {
    const QFont wanted = request(QStringLiteral("monospace"), pointSize);
    if (resolvesFixed(wanted)) return wanted;
    // The usual fixed-pitch faces first, then whichever the machine has.
    QStringList candidates = {"DejaVu Sans Mono", "Liberation Mono", "Noto Mono",
                              "Nimbus Mono PS",   "Courier New",     "FreeMono"};
    candidates += QFontDatabase::families();
    for (const QString& family : candidates) {
        if (!QFontDatabase::hasFamily(family) || !QFontDatabase::isFixedPitch(family)) continue;
        QFont f = request(family, pointSize);
        if (resolvesFixed(f)) return f;
    }
    return wanted;  // a machine without a single fixed-pitch face
}

}  // namespace kova::forms
