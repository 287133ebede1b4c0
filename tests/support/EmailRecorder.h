#ifndef PIMTLV_TESTS_SUPPORT_EMAILRECORDER_H
#define PIMTLV_TESTS_SUPPORT_EMAILRECORDER_H

#include "pimshared/email/EmailDescription.h"
#include "support/MimeMessageRecorder.h"

namespace MimeTest {

// Records every operation of an e-mail receiver as one line.
class EmailRecorder : public TRecorder<PimShared::EmailItem> {};

}  // namespace MimeTest

#endif
