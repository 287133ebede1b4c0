#ifndef PIMTLV_PIMSHARED_CALLSTACK_CALLSTACKTYPEIDS_H
#define PIMTLV_PIMSHARED_CALLSTACK_CALLSTACKTYPEIDS_H

#include "pimshared/common/TypeIds.h"

/// Type IDs of a call-list stream: node 5 { UInt32 10, one entry node 2000 or
/// 2001 { property leaves 2010 to 2016 } }. The library only reads this
/// layout; the devices that keep call lists write it.
namespace PimShared {
namespace CallstackTypeIds {

using PimShared::TypeIdValTypeInstance;

constexpr unsigned int TypeIdObjTypeCallList = TypeIdObjTypeCallstack;  ///< node 5

/// The two kinds of entry node; which calls each holds is the device's affair.
constexpr unsigned int TypeIdCompTypeCallEntry1 = 2000;
constexpr unsigned int TypeIdCompTypeCallEntry2 = 2001;

/// Properties: bare leaves directly in the entry node.
constexpr unsigned int TypeIdPropTypeCallByte = 2010;   ///< UInt8
constexpr unsigned int TypeIdPropTypeCallText1 = 2011;  ///< String
constexpr unsigned int TypeIdPropTypeCallText2 = 2012;
constexpr unsigned int TypeIdPropTypeCallText3 = 2013;
constexpr unsigned int TypeIdPropTypeCallText4 = 2014;
constexpr unsigned int TypeIdPropTypeCallText5 = 2015;
constexpr unsigned int TypeIdPropTypeCallFlag = 2016;  ///< UInt8, non-zero is true

}  // namespace CallstackTypeIds
}  // namespace PimShared

#endif
