// The program's application object started under a comma-decimal user locale
// (LC_ALL=de_DE.UTF-8), as a German user would start it. The locale is made in the test
// set-up; when it cannot be made every test is skipped, saying why.
#include <gtest/gtest.h>

#include <QtGlobal>
#include <cstdlib>
#include <string>

#include "app/kova_application.h"
#include "locale_rig.h"
#include "support/comma_locale.h"

namespace kova::test {
std::string gLocaleProblem;
}

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    if (kova::test::PrepareCommaLocale(kova::test::gLocaleProblem)) {
        setenv("LC_ALL", kova::test::kCommaLocale, 1);
        setenv("LANG", kova::test::kCommaLocale, 1);
    }
    kova::app::KovaApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
