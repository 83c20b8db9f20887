#include "daq/sim/port_chip.h"

#include <gtest/gtest.h>

namespace kova {

TEST(PortChip, BusyPinReadsInvertedInStatusBit7) {
    PortChip chip{0x378, PortChipKind::Spp};
    chip.statusPins = 0x80;
    EXPECT_EQ(chip.read(0x379), 0x06);
    chip.statusPins = 0x48;  // ACK and ERROR high, BUSY low
    EXPECT_EQ(chip.read(0x379), 0xCE);
}

TEST(PortChip, ControlBits013DriveTheirPinsInverted) {
    PortChip chip{0x378, PortChipKind::Spp};
    chip.write(0x37A, 0x04);
    EXPECT_EQ(chip.controlPins(), 0x0F);
    chip.write(0x37A, 0x0B);
    EXPECT_EQ(chip.controlPins(), 0x00);
    EXPECT_EQ(chip.read(0x37A), 0x0B);
}

TEST(PortChip, OnlyBidirectionalChipsTurnTheDataLinesAround) {
    for (auto kind : {PortChipKind::Spp, PortChipKind::PS2, PortChipKind::Epp}) {
        PortChip chip{0x378, kind};
        chip.externalData = 0x12;
        chip.write(0x378, 0x55);
        chip.write(0x37A, 0x24);
        EXPECT_EQ(chip.read(0x378), kind == PortChipKind::Spp ? 0x55 : 0x12);
    }
}

TEST(PortChip, EcpStandardModeIgnoresTheDirectionBit) {
    PortChip chip{0x378, PortChipKind::Ecp};
    chip.write(0x378, 0x55);
    chip.write(0x37A, 0x20);
    EXPECT_EQ(chip.read(0x378), 0x55);
    chip.setEcpMode(1);
    EXPECT_EQ(chip.read(0x378), 0xFF);
}

TEST(PortChip, EcrFifoBitsAreReadOnly) {
    PortChip chip{0x378, PortChipKind::Ecp};
    EXPECT_EQ(chip.read(0x77A), 0x01);
    chip.write(0x77A, 0x36);
    EXPECT_EQ(chip.read(0x77A), 0x35);
    EXPECT_EQ(chip.ecpMode(), 1);
    chip.fifoFull = true;
    chip.fifoEmpty = false;
    EXPECT_EQ(chip.read(0x77A), 0x36);
}

TEST(PortChip, NoEcrReadsAsAnEmptyBus) {
    PortChip chip{0x378, PortChipKind::Epp};
    EXPECT_EQ(chip.read(0x77A), 0xFF);
    chip.write(0x77A, 0x34);
    EXPECT_EQ(chip.read(0x77A), 0xFF);
}

TEST(PortChip, EppCycleWithoutPeripheralTimesOut) {
    PortChip chip{0x378, PortChipKind::Epp};
    chip.eppPeripheral = false;
    chip.write(0x37B, 0x55);
    EXPECT_TRUE(chip.timeout());
    EXPECT_EQ(chip.read(0x379) & 1, 1);
    chip.write(0x379, 0);  // clears by writing 1 only
    EXPECT_TRUE(chip.timeout());
    chip.write(0x379, 1);
    EXPECT_FALSE(chip.timeout());
}

TEST(PortChip, TimeoutClearingVariants) {
    PortChip byZero{0x378, PortChipKind::Epp};
    byZero.timeoutClear = TimeoutClear::ByWritingZero;
    byZero.setTimeout(true);
    byZero.write(0x379, 1);
    EXPECT_TRUE(byZero.timeout());
    byZero.write(0x379, 0);
    EXPECT_FALSE(byZero.timeout());

    PortChip byRead{0x378, PortChipKind::Epp};
    byRead.timeoutClear = TimeoutClear::ByReadingStatus;
    byRead.setTimeout(true);
    EXPECT_EQ(byRead.read(0x379) & 1, 1);
    EXPECT_EQ(byRead.read(0x379) & 1, 0);
}

TEST(PortChip, ClaimsItsRegistersOnly) {
    PortChip chip{0x278, PortChipKind::Spp};
    EXPECT_TRUE(chip.claims(0x278));
    EXPECT_TRUE(chip.claims(0x27F));
    EXPECT_TRUE(chip.claims(0x67A));
    EXPECT_FALSE(chip.claims(0x280));
    EXPECT_FALSE(chip.claims(0x277));
    EXPECT_FALSE(chip.claims(0x378));
}

}  // namespace kova
