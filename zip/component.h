// The base of the two archive components, PKZIP and PKUNZIP: properties set by dispatch identifier,
// one action property that runs to its end inside the assignment, and events. A component belongs
// to one thread; events and questions are raised on it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <variant>

#include "platform/machine.h"
#include "zip/base/component_events.h"

namespace vantrel::zip {

using Value = std::variant<bool, std::int16_t, std::int32_t, std::string>;

class Component : protected RunEvents {
  public:
    ~Component() override = default;
    Component(const Component&) = delete;
    Component& operator=(const Component&) = delete;

    // Sets a property; the action property runs the operation. Unknown identifier, wrong type or
    // unacceptable value: error 380.
    virtual void Set(int id, const Value& value);
    // Reads a property: the value set last, or the initial one. Unknown identifier: error 380.
    virtual Value Get(int id) const;

    // Events; one without a handler is dropped. Progress values are 0 to 100.
    std::function<void(std::int32_t& percent, bool& cancel)> OverallProgress;
    std::function<void(std::int32_t& percent)> FileProgress;
    std::function<void(const ComponentMessage& message)> Message;
    // Raised before each progress event, and once when the action has ended.
    std::function<void(const RunFigures& figures)> Figures;

    // Asks about disks to insert and failures that the user can remove; nullptr when unattended.
    Questions* questions = nullptr;

  protected:
    // `initial` holds every property with the value that it has before it is set, which also gives
    // its type. `machine` is borrowed.
    Component(platform::Machine& machine, int action_id, std::map<int, Value> initial)
        : machine_(machine), action_id_(action_id), values_(std::move(initial)) {}

    // Whether a property may be set to `value`, whose type is right already.
    virtual bool IsAcceptable(int id, const Value& value) const = 0;
    virtual void RunAction(std::int16_t action) = 0;

    template <typename T>
    const T& Property(int id) const {
        return std::get<T>(values_.at(id));
    }
    void Keep(int id, Value value) { values_[id] = std::move(value); }
    // A path that begins with exactly one backslash is on the application's drive; it is read back
    // as it was set.
    std::string FullPath(const std::string& path) const;
    platform::Machine& machine() const { return machine_; }

    void OnProgress(int percent, bool& cancel) override;
    void OnFileProgress(int percent) override;
    void OnMessage(const ComponentMessage& message) override;
    void OnFigures(const RunFigures& figures) override;
    Questions* QuestionHandler() override { return questions; }

  private:
    platform::Machine& machine_;
    int action_id_;
    std::map<int, Value> values_;
};

}  // namespace vantrel::zip
