#include "platform/port_system.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/test_support.h"

namespace kova {

TEST(BaseAddr, KernelTextIsDecimalBaseThenHighBase) {
    EXPECT_EQ(ParseBaseAddr("888\t1912\n"), 0x378);
    EXPECT_EQ(ParseBaseAddr("632\t1656\n"), 0x278);
    EXPECT_EQ(ParseBaseAddr("53264\t-1\n"), 0xD010);
    EXPECT_EQ(ParseBaseAddr("956"), 0x3BC);
}

TEST(BaseAddr, AnythingElseIsNoBase) {
    EXPECT_EQ(ParseBaseAddr(""), std::nullopt);
    EXPECT_EQ(ParseBaseAddr("0x378\t0x778\n"), std::nullopt);  // not decimal
    EXPECT_EQ(ParseBaseAddr("0\t0\n"), std::nullopt);
    EXPECT_EQ(ParseBaseAddr("65536\t0\n"), std::nullopt);
    EXPECT_EQ(ParseBaseAddr("99999999999999999999\t0\n"), std::nullopt);
    EXPECT_EQ(ParseBaseAddr("-888\t1912\n"), std::nullopt);
    EXPECT_EQ(ParseBaseAddr("888abc\n"), std::nullopt);
}

TEST(BaseAddr, ReadFromTheKernelTableUnderAGivenProcFolder) {
    test::TempFolder tmp;
    const auto dir = tmp.path() / "sys/dev/parport/parport1";
    std::filesystem::create_directories(dir);
    test::WriteFileBytes(dir / "base-addr", "632\t1656\n");
    const PortPaths paths{(tmp.path() / "dev").string(), tmp.path().string()};
    auto sys = MakeRealPortSystem();
    EXPECT_EQ(KernelLptBase(*sys, paths, 2), 0x278);
    EXPECT_EQ(KernelLptBase(*sys, paths, 1), 0);  // no parport0 entry
    EXPECT_EQ(KernelLptBase(*sys, paths, 4), 0);  // no LPT 4
}

TEST(BaseAddr, AGarbledKernelTableGivesNoBase) {
    test::TempFolder tmp;
    const auto dir = tmp.path() / "sys/dev/parport/parport0";
    std::filesystem::create_directories(dir);
    test::WriteFileBytes(dir / "base-addr", std::string(10000, 'x'));
    const PortPaths paths{"/nonexistent", tmp.path().string()};
    EXPECT_EQ(KernelLptBase(*MakeRealPortSystem(), paths, 1), 0);
}

TEST(PortSystem, ConventionalBasesOfLpt1To3) {
    EXPECT_EQ(ConventionalLptBase(1), 0x378);
    EXPECT_EQ(ConventionalLptBase(2), 0x278);
    EXPECT_EQ(ConventionalLptBase(3), 0x3BC);
    EXPECT_EQ(ConventionalLptBase(0), 0);
    EXPECT_EQ(ConventionalLptBase(4), 0);
}

TEST(PortSystem, DeviceNodeOfEachLpt) {
    EXPECT_EQ(PpdevPath(PortPaths{}, 1), "/dev/parport0");
    EXPECT_EQ(PpdevPath(PortPaths{"/tmp/x/dev", "/proc"}, 3), "/tmp/x/dev/parport2");
    EXPECT_EQ(HexAddress(0x378), "0x378");
    EXPECT_EQ(HexAddress(0xD010), "0xD010");
}

TEST(PortSystem, OpeningAMissingDeviceGivesENOENT) {
    test::TempFolder tmp;
    EXPECT_EQ(MakeRealPortSystem()->open((tmp.path() / "parport0").string()), -ENOENT);
}

}  // namespace kova
