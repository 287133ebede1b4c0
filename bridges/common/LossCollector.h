#ifndef PIMTLV_BRIDGES_COMMON_LOSSCOLLECTOR_H
#define PIMTLV_BRIDGES_COMMON_LOSSCOLLECTOR_H

// Gathers what one item could not carry while a bridge reads it: each name
// once, with its count and the line of its first occurrence, in the order
// the names first appeared.

#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "bridges/common/Bridge.h"

namespace PimBridge {

class LossCollector {
  public:
    void Add(const std::string& name, unsigned int line, Loss::Kind kind = Loss::Kind::NotCarried,
             std::string detail = {}) {
        const auto found = index_.try_emplace(Key(name, kind), losses_.size());
        if (!found.second) {
            ++losses_[found.first->second].count;
            return;
        }
        losses_.push_back(Loss{name, 1, line, kind, std::move(detail)});
    }
    bool Empty() const { return losses_.empty(); }
    // Whether name is already listed (as any kind, or as kind): a caller
    // whose line is costly to find finds it only for the first occurrence.
    bool Contains(const std::string& name, Loss::Kind kind) const {
        return index_.count(Key(name, kind)) != 0;
    }
    bool Contains(const std::string& name) const {
        for (Loss::Kind kind : {Loss::Kind::NotCarried, Loss::Kind::Regenerated,
                                Loss::Kind::Converted, Loss::Kind::Limit}) {
            if (index_.count(Key(name, kind)) != 0) return true;
        }
        return false;
    }
    std::vector<Loss> Take() {
        index_.clear();
        return std::exchange(losses_, {});
    }

  private:
    static std::string Key(const std::string& name, Loss::Kind kind) {
        return name + '\0' + static_cast<char>('0' + static_cast<int>(kind));
    }

    std::vector<Loss> losses_;
    // Most items have a few names, but input can have thousands of distinct
    // ones (X- fields): a scan per name would take time quadratic in them.
    std::unordered_map<std::string, std::size_t> index_;
};

}  // namespace PimBridge

#endif
