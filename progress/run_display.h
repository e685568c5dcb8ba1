// What the window of a run shows of its figures: collects them with the times at which they came,
// and has the texts. Plain values; the window only shows them. Window thread only.
#pragma once

#include <cstdint>
#include <string>

#include "common/display_text.h"
#include "progress/run_estimate.h"
#include "progress/run_text.h"
#include "zip/base/component_events.h"

namespace vantrel {

class RunDisplay {
  public:
    using Time = RunEstimate::Time;

    // The run begins.
    void Start(Time now, const NumberFormat& numbers);
    // A question waits between these two.
    void Pause(Time now) { estimate_.Pause(now); }
    void Resume(Time now) { estimate_.Resume(now); }
    // Keeps the names of the files that are left out, and the first error.
    void Add(const zip::ComponentMessage& message);
    // Takes the newest figures. True when they are to be shown: at most ten times a second, but at
    // once when a disk is asked for, because a question follows and stops the updates.
    bool Update(Time now, const zip::RunFigures& figures);

    // The lines of a working run.
    std::string FiguresLine() const;
    std::string LeftOutLine() const;

    // The run as it has ended now, and its lines.
    RunEnd End(Time now, bool cancelled) const;
    std::string SummaryLine(const RunEnd& end) const { return SummaryText(end, numbers_); }
    std::string ProblemLine() const;

  private:
    NumberFormat numbers_;
    RunEstimate estimate_;
    zip::RunFigures figures_;
    Time shown_at_{0};
    std::uint32_t shown_disk_ = 0;
    LeftOutFiles left_out_;
    std::string failure_;  // text of the first error
};

}  // namespace vantrel
