#ifndef PIMTLV_BRIDGES_COMMON_LOSSCOLLECTOR_H
#define PIMTLV_BRIDGES_COMMON_LOSSCOLLECTOR_H

// Gathers what one item could not carry while a bridge reads it: each name
// once, with its count and the line of its first occurrence, in the order
// the names first appeared.

#include <string>
#include <utility>
#include <vector>

#include "bridges/common/Bridge.h"

namespace PimBridge {

class LossCollector {
  public:
    void Add(const std::string& name, unsigned int line, Loss::Kind kind = Loss::Kind::NotCarried,
             std::string detail = {}) {
        for (Loss& loss : losses_) {
            if (loss.name == name && loss.kind == kind) {
                ++loss.count;
                return;
            }
        }
        losses_.push_back(Loss{name, 1, line, kind, std::move(detail)});
    }
    bool Empty() const { return losses_.empty(); }
    // Whether name is already listed as kind: a caller whose line is costly
    // to find finds it only for the first occurrence.
    bool Contains(const std::string& name, Loss::Kind kind = Loss::Kind::NotCarried) const {
        for (const Loss& loss : losses_) {
            if (loss.name == name && loss.kind == kind) return true;
        }
        return false;
    }
    std::vector<Loss> Take() { return std::exchange(losses_, {}); }

  private:
    std::vector<Loss> losses_;  // few per item: a scan beats a map
};

}  // namespace PimBridge

#endif
