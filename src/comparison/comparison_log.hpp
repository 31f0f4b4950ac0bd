// What ccfunc writes to its diagnostic file.
#pragma once

#include "comparison/sweep.hpp"
#include "frame/diagnostic_text.hpp"
#include "vialto/vialto.h"

namespace vialto {

// The settings of an analysis record and of the two profile records; nothing of a null pointer's.
void log_comparison_inputs(DiagnosticText& text, const tProfAnalysis* analysis,
                           const tProfinfo* ptrProfinfo);

// The results in the analysis record, and a table with one line per offset.
void log_comparison_results(DiagnosticText& text, const tProfAnalysis& analysis,
                            const SweepArrays& sweep);

} // namespace vialto
