#ifndef PIMTLV_TESTS_SUPPORT_IMRECORDER_H
#define PIMTLV_TESTS_SUPPORT_IMRECORDER_H

#include "pimshared/im/IMDescription.h"
#include "support/MimeMessageRecorder.h"

namespace MimeTest {

// Records every operation of an instant-message receiver as one line.
class IMRecorder : public TRecorder<PimShared::ImItem> {};

}  // namespace MimeTest

#endif
