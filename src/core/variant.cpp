#include "core/variant.h"

#include "core/numeric.h"

namespace kova {

double Variant::asNumber() const {
    if (type == kVarString) return isNumeric(text) ? leadingNumber(text) : 0.0;
    if (type == kVarEmpty || type == kVarNull) return 0.0;
    return number;
}

}  // namespace kova
