#include "host/command/reading_progress.h"

#include "host/command/interruption.h"
#include "host/command/progress_line.h"

#include <cstdint>
#include <memory>

namespace host {

indexing::OnProgress progress_of_reading() {
    return [line = std::make_shared<ProgressLine>("Reading the sources")](std::int64_t done, std::int64_t total) {
        Interruption::throw_if_requested("interrupted");
        0 < done&& done < total ? line->show(done, total) : line->clear();
    };
}

}  // namespace host
