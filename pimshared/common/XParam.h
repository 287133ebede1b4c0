#ifndef PIMTLV_PIMSHARED_COMMON_XPARAM_H
#define PIMTLV_PIMSHARED_COMMON_XPARAM_H

namespace PimShared {

/// One extension parameter: a name and a value, both borrowed texts. Each
/// Attributes interface that carries extension parameters names this record
/// as its own nested tXParam.
struct tXParam {
    const char* name;   ///< the parameter's name, X- prefix included
    const char* value;  ///< its value
};

}  // namespace PimShared

#endif
