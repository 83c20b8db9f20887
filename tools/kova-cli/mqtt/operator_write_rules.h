#pragma once
// TEMPORARY: stands for the readings screen's operator write until it lands.
#include "core/station.h"
namespace kova::mqtt {
void OperatorSetAnalog(Station& st, int tagNumber, double value);
void OperatorSetDigital(Station& st, int tagNumber, bool on);
void SendPendingOutputs(Station& st);
}  // namespace kova::mqtt
