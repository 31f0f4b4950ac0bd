#include "comparison/comparison_log.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace vialto {

namespace {

void log_filter_settings(DiagnosticText& text, const tFiltCon& settings) {
    text.record("  main filter types             =", settings.iMainFilterType);
    text.record("  sub-filter type               =", settings.iSubFilterType);
    text.record("  output type                   =", settings.iOutType);
    text.record("  if 250mm moving average       =", settings.if250mmFilter);
    text.record("  BW4 Ini baselength[m]         =", settings.xBW4IniBaseLength);
    text.record("  Long Wavelength Cutoff [m]    =", settings.xLongWavelength);
    text.record("  Short Wavelength Cutoff [m]   =", settings.xShortWavelength);
    text.record("  simu velocity for IRI/RN [kph]=", settings.xSimuVelocity);
    text.record("  Power weighting for BWPI      =", settings.xPowerWeighting);
}

void log_profile(DiagnosticText& text, std::string_view title, const tProfinfo& info) {
    text.record(title);
    text.record("i_raw_leadin         :", info.i_raw_leadin);
    text.record("i_raw_leadout        :", info.i_raw_leadout);
    text.record("x_sampleinterval     :", info.x_sampleinterval);
    log_filter_settings(text, info.tFilter);
}

} // namespace

void log_comparison_inputs(DiagnosticText& text, const tProfAnalysis* analysis,
                           const tProfinfo* ptrProfinfo) {
    if (analysis != nullptr) {
        text.record("if_outputfilt        :", analysis->if_outputfilt);
        text.record("if_padding           :", analysis->if_padding);
        text.record("if_upsampling        :", analysis->if_upsampling);
        text.record("x_normsampleinterval :", analysis->x_normsampleinterval);
        text.record("x_offset_max         :", analysis->x_offset_max);
    }
    if (ptrProfinfo != nullptr) {
        log_profile(text, "reference profile", ptrProfinfo[0]);
        log_profile(text, "test profile", ptrProfinfo[1]);
    }
}

void log_comparison_results(DiagnosticText& text, const tProfAnalysis& analysis,
                            const SweepArrays& sweep) {
    text.record("Opt CC (%)           :", analysis.x_opt_finalcc);
    text.record("Opt shapefactor CC(%):", analysis.x_opt_shapefactor);
    text.record("Opt roughness CC(%)  :", analysis.x_opt_roughcc);
    text.record("Opt Offset(m)        :", analysis.x_opt_offset);
    text.record("Reference IRI (m/m)  :", analysis.x_ref_iri);
    text.record("Test IRI (m/m)       :", analysis.x_test_iri);
    text.record("Diff in IRI (%)      :", analysis.x_iri_diff);
    text.record("    No.     Offset     roughCC shapeCC FinalCC");
    for (std::size_t k = 0; k < sweep.final_cc.size(); ++k) {
        text.record(static_cast<std::int32_t>(k + 1), sweep.offset[k], sweep.roughness[k],
                    sweep.shape[k], sweep.final_cc[k]);
    }
}

} // namespace vialto
