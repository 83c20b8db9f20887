// What the page is given: JSON from snapshots, escaped text, the history of the log folder
// (no file outside it), and the listen address.
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "displays/screen_rig.h"
#include "links/station_snapshot.h"
#include "links/web/web_history.h"
#include "links/web/web_json.h"
#include "links/web/web_server.h"

namespace kova::web {

using Json = nlohmann::json;

TEST(WebJson, LiveStateShowsValuesAsTheScreensDoAndAlarmsAsTheListDoes) {
    test::ScreenRig r;
    r.st.tags[test::kLevel].Value = 12.5f;
    r.st.tags[test::kPump].Value = 1;
    r.st.alarms.Alarms[2].State = 4;
    r.st.alarms.Alarms[2].LastText = "NORML 11-15-2026 14:05:09 <b>ok</b>";
    links::SnapshotBuilder b;
    const Json j = Json::parse(LiveJson(*b.build(r.st, 0)));
    EXPECT_EQ(j["values"][test::kLevel - 1], " 12.5");
    EXPECT_EQ(j["states"][test::kPump - 1], 1);
    EXPECT_EQ(j["alarms"]["current"][1], "NORML 11-15-2026 14:05:09 <b>ok</b>");
    EXPECT_EQ(j["alarms"]["unacknowledged"], "Unacknowledged alarms: 1 (1 back to normal)");
    EXPECT_EQ(j["minmax"].size(), 14u);
}

TEST(WebJson, LayoutCarriesScreensWithCaptionsPrefixesAndStateTexts) {
    test::ScreenRig r;
    links::SnapshotBuilder b;
    const Json j = Json::parse(LayoutJson(*b.build(r.st, 0)));
    EXPECT_EQ(j["screens"][0]["caption"], "Screen 1     Plant");
    EXPECT_EQ(j["screens"][0]["digital"][0], test::kDoor);
    EXPECT_EQ(j["tags"][test::kValve - 1]["prefixedLabel"], "O-Valve Position");
    EXPECT_EQ(j["tags"][test::kDoor - 1]["text1"], "CLOSED");
    EXPECT_EQ(j["tags"][test::kLevel - 1]["writable"], false);
}

TEST(WebJson, TrendPointsRunNewestFirstAsTheTrendWindowDrawsThem) {
    test::ScreenRig r;
    r.st.trends.TrendTable(2, 1) = test::kLevel;
    r.st.trends.NewestSample = 3;
    r.st.trends.TrendSamples(3, 5) = 30;  // trend 2, pen 1: column 5
    r.st.trends.TrendSamples(2, 5) = 20;
    links::SnapshotBuilder b;
    const Json j = Json::parse(TrendJson(*b.build(r.st, 0), 2));
    EXPECT_EQ(j["pens"][0]["label"], "Tank Level");
    EXPECT_EQ(j["pens"][0]["points"][0], 30);
    EXPECT_EQ(j["pens"][0]["points"][1], 20);
    EXPECT_EQ(j["pens"][0]["points"].size(), 200u);
    EXPECT_EQ(j["pens"][1]["label"], " ");
}

TEST(WebJson, HtmlIsEscaped) {
    EXPECT_EQ(EscapeHtml("<script>\"x\" & 'y'</script>"),
              "&lt;script&gt;&quot;x&quot; &amp; &#39;y&#39;&lt;/script&gt;");
}

TEST(WebJson, TextThatIsNotUtf8IsReplacedNotAFailure) {
    test::ScreenRig r;
    r.st.tags[test::kLevel].Label =
        "Temp \xB0"
        "C";  // a Windows-1252 byte
    links::SnapshotBuilder b;
    EXPECT_NO_THROW(Json::parse(LayoutJson(*b.build(r.st, 0))));
}

TEST(WebHistory, OnlyLogFilesDirectlyInTheFolderAreReached) {
    test::TempFolder dir;
    test::WriteFileBytes(dir / "DA201126.CSV", "LOG PERIOD,TIME,DATE,Level\r\n1,10:00:00,x,5\r\n");
    test::WriteFileBytes(dir / "notes.txt", "x");
    std::filesystem::create_directory(dir / "sub");
    test::WriteFileBytes(dir / "sub" / "INNER.CSV", "x");
    std::filesystem::create_symlink("/etc/passwd", dir / "LINK.CSV");
    std::vector<LogFileEntry> files;
    std::string error;
    ASSERT_TRUE(ListLogFiles(dir.path().string(), files, error));
    ASSERT_EQ(files.size(), 1u);
    EXPECT_EQ(files[0].name, "DA201126.CSV");
    const std::string folder = dir.path().string();
    EXPECT_FALSE(LogFilePath(folder, "DA201126.CSV", error).empty());
    for (const char* bad : {"../DA201126.CSV", "sub/INNER.CSV", "LINK.CSV", "notes.txt", "..", "",
                            "/etc/passwd", "sub\\INNER.CSV"})
        EXPECT_TRUE(LogFilePath(folder, bad, error).empty()) << bad;
}

TEST(WebHistory, BlocksOf200RowsStepThroughTheFileAndEndWithNoMorePoints) {
    test::TempFolder dir;
    std::string text = "LOG PERIOD,TIME,DATE,Level\r\n";
    for (int i = 1; i <= 250; ++i)
        text += std::to_string(i) + ",10:00:00,20-11-26," + std::to_string(i * 2) + "\r\n";
    test::WriteFileBytes(dir / "DA.CSV", text);
    HistoryReaders readers;
    HistoryRequest req{(dir / "DA.CSV").string(), {4}, 1};
    HistoryAnswer a = readers.block(req);
    ASSERT_EQ(a.error, "");
    EXPECT_EQ(a.rowsRead, 200);
    EXPECT_EQ(a.block.values[0][0], 2.0f);
    req.startRow = 201;
    a = readers.block(req);
    EXPECT_EQ(a.rowsRead, 50);
    EXPECT_EQ(a.block.values[0][49], 500.0f);
    EXPECT_EQ(a.block.values[0][50], 0.0f);  // the rest of the block is zeros
    req.startRow = 401;
    EXPECT_EQ(readers.block(req).rowsRead, 0);  // "No More Points To Plot"
    req.columns = {3};                          // DATE is not offered
    EXPECT_NE(readers.block(req).error, "");
    req.columns = {1, 4, 1, 4, 1};
    EXPECT_EQ(readers.block(req).error, "at most four columns can be charted");
}

TEST(ListenAddress, PortAloneMeansLoopbackAndAddressesAreChecked) {
    std::string addr, error;
    int port = 0;
    ASSERT_TRUE(ParseListenAddress("8080", addr, port, error));
    EXPECT_EQ(addr, "127.0.0.1");
    EXPECT_EQ(port, 8080);
    ASSERT_TRUE(ParseListenAddress("0.0.0.0:80", addr, port, error));
    EXPECT_EQ(addr, "0.0.0.0");
    ASSERT_TRUE(ParseListenAddress("[::1]:8443", addr, port, error));
    EXPECT_EQ(addr, "::1");
    for (const char* bad : {"", "http", "70000", ":8080", "host:", "a b:1", "[::1]8080", "0"})
        EXPECT_FALSE(ParseListenAddress(bad, addr, port, error)) << bad;
}

}  // namespace kova::web
