/*
 * Vialto: numerical analyses of measured road profiles.
 *
 * A profile is a contiguous array of 32-bit floats: elevations along a wheel track, taken at one
 * constant sample interval. A host calls one function per analysis with its own arrays and records
 * and gets numbers, flags and a return code. This header is the whole interface; it serves C from
 * C89 (with stdint.h) and C++ from C++11.
 *
 * What all functions have in common:
 *
 *  1. The result is 1 when the analysis was carried out and 3 when it failed; nothing else occurs.
 *  2. The last argument is the address of a tEvent, which is written on failure only. After a
 *     success it holds what it held before, so decide by the result. It may be null.
 *  3. Lengths are metres unless a unit is named. Arrays are indexed from 0 and belong to the host,
 *     which provides room for every output. A negative size counts as 0. Unless a contract says
 *     otherwise, the arrays of one call do not overlap.
 *  4. A null pointer where data is needed, and a sample interval that is not a positive finite
 *     number, are refused: result 3, error_code 100, a description that names the argument
 *     ("dataarray is a null pointer", "xStepSize is not a positive finite number"; setup and cfg by
 *     their types, tGrinderSetup and tMustGrindCfg), the function's name as routine, and no output
 *     written. Memory that cannot be had is reported in the same way ("not enough memory for the
 *     analysis"), but outputs written before stay as they are.
 *  5. Most functions write a diagnostic text file on every call: the function's name and ".txt", in
 *     the directory that the environment variable TMP names. Where that file cannot be opened
 *     there is no output: result 3 with
 *         code 102  "error opening a new file - PATH, iostat = STATUS"
 *         code 101  "error in finding a free file unit" (89 other calls are writing files)
 *     and the routine "io_tmp_file/" with the function's name. A contract says where a function
 *     differs.
 *  6. Any number of threads may call any functions at the same time; each call gives what it gives
 *     alone. While one call writes a diagnostic file, another of the process that wants the same
 *     path leaves the file to it and writes none; that is no failure. A process that forks between
 *     its calls goes on calling in both halves. No thread may change the environment (TMP) while
 *     another calls.
 *  7. A call runs in the default floating-point environment, whatever the host has set: rounding to
 *     nearest, no exception trapped, denormals kept. The host's environment is back on every way
 *     out, with the flags that it had raised and no other.
 */
#ifndef VIALTO_VIALTO_H
#define VIALTO_VIALTO_H

#include <stddef.h>
#include <stdint.h>

/* The version of the interface. The library that a host meets has the same major number, and at
 * least the version that it was built with. */
#define VIALTO_VERSION_MAJOR 1
#define VIALTO_VERSION_MINOR 1
#define VIALTO_VERSION_PATCH 0

/* As one number, to compare: 10203 is version 1.2.3. */
#define VIALTO_VERSION                                                                             \
    (VIALTO_VERSION_MAJOR * 10000 + VIALTO_VERSION_MINOR * 100 + VIALTO_VERSION_PATCH)

#if defined(__GNUC__) && !defined(_WIN32)
#define VIALTO_API __attribute__((visibility("default")))
#else
#define VIALTO_API /* the export list of the library says it all */
#endif

/* stdcall (with undecorated names) on 32-bit Windows, the platform's own convention elsewhere. */
#if defined(_WIN32) && !defined(_WIN64)
#define VIALTO_CALL __stdcall
#else
#define VIALTO_CALL
#endif

#if defined(__cplusplus) || (defined(__STDC_VERSION__) && __STDC_VERSION__ >= 199901L)
#define VIALTO_INLINE inline
#elif defined(__GNUC__) || defined(__clang__)
#define VIALTO_INLINE __inline__
#elif defined(_MSC_VER)
#define VIALTO_INLINE __inline
#else
#define VIALTO_INLINE
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ------------------------------------------------------------------------------------------------
 * Named values of the int32_t arguments and fields
 * --------------------------------------------------------------------------------------------- */

/* Results of every function. */
enum { vialto_success = 1, vialto_failure = 3 };

/* tEvent.error_code */
enum {
    vialto_code_request = 100,  /* the request cannot be served */
    vialto_code_analysis = 101, /* a selector out of range, a numerical failure or a limit */
    vialto_code_file = 102      /* a file could not be opened */
};

/* tEvent.error_type */
enum {
    vialto_type_fatal = 1,
    vialto_type_some_failure = 2, /* recoverable with some failure */
    vialto_type_no_failure = 3    /* recoverable without failure */
};

/* Ride-index selector. A contract says which of them the function takes. */
enum {
    idx_ridests_None = 0,    /* no index; no analysis takes it */
    idx_ridests_IRI = 1,     /* International Roughness Index of one profile */
    idx_ridests_RN = 2,      /* root-mean-square statistic of the Ride Number filter, one profile */
    idx_ridests_TwoRN = 3,   /* former two-profile Ride Number, no longer supported */
    idx_ridests_HRI = 4,     /* Half-car Roughness Index, two tracks */
    idx_ridests_MRI = 5,     /* Mean Roughness Index, two tracks */
    idx_ridests_2ChanRN = 6, /* Ride Number of two tracks */
    idx_ridests_WIM = 9      /* WIM error index */
};

/* tFiltCon.iMainFilterType */
enum {
    idx_filttyp_none = 0,
    idx_filttyp_mvgavg = 1,     /* moving average */
    idx_filttyp_IRI = 2,        /* quarter car with the IRI parameters */
    idx_filttyp_RN = 3,         /* quarter car with the Ride Number parameters */
    idx_filttyp_bwfilt = 4,     /* third-order Butterworth */
    idx_filttyp_antismooth = 5, /* anti-smoothing */
    idx_filttyp_detrend = 6,    /* straight-line detrending */
    idx_filttyp_bridge = 7      /* bridge filter */
};

/* tFiltCon.iSubFilterType, for moving average and Butterworth */
enum {
    idx_subfilttyp_none = 0,
    idx_subfilttyp_bandpass = 1,
    idx_subfilttyp_lowpass = 2,
    idx_subfilttyp_highpass = 3,
    idx_subfilttyp_centredband = 4 /* Butterworth only: band-pass about a centre frequency */
};

/* tFiltCon.iOutType */
enum { idx_filtouttyp_elevation = 1, idx_filtouttyp_slope = 2 };

/* Switches (fields and arguments whose name starts with if): any value but 1 is a no, unless a
 * contract says otherwise. */
enum { vialto_yes = 1, vialto_no = 2 };

/* psd_dll, iPSDType */
enum { idx_psdtyp_elevation = 1, idx_psdtyp_slope = 2 };

/* psd_dll, iOctaveBands */
enum { idx_psdband_octave = 1, idx_psdband_even = 2 };

/* Places of xPGSettings. The contract of pgindex_dll tells what stands there. */
enum {
    idx_pgset_BlankingBand = 0,
    idx_pgset_MinScallopWidth = 1,
    idx_pgset_MinScallopHeight = 2,
    idx_pgset_ScallopRound = 3,
    idx_pgset_BumpCutoffHeight = 4,
    idx_pgset_BumpChordlength = 5,
    idx_pgset_count = 6 /* the length of the array */
};

/* tPGDefect.Type: side of the blanking band */
enum { idx_pgdefect_above = 1, idx_pgdefect_below = 2 };

/* tGrindSpot.iDirection: towards higher or lower sample numbers */
enum { idx_grinddir_higher = 1, idx_grinddir_lower = 2 };

/* iGrindFlags */
enum {
    idx_grindflag_none = 1,   /* not ground, or not to be ground */
    idx_grindflag_within = 2, /* ground no deeper than MaxGrindingDepth_mm */
    idx_grindflag_deeper = 3  /* ground deeper */
};

/* tJointIDCfg.i_jntid_method */
enum {
    idx_jntid_stepdetect = 1,   /* a step between two neighbouring samples */
    idx_jntid_valleydetect = 2, /* refused: not implemented */
    idx_jntid_antismooth = 3,   /* a downward spike about the smoothed profile */
    idx_jntid_curledge = 4      /* a peak under the rolling straightedge */
};

/* iLeftTypes, iRightTypes of joint_id_dlldrv */
enum { idx_jnttyp_none = 0, idx_jnttyp_joint = 1, idx_jnttyp_crack = 2 };

/* Lengths that are fixed, and limits: a contract says what lies beyond them. */
enum {
    vialto_text_length = 256,          /* characters of a text of tEvent */
    vialto_mxPasses = 10,              /* passes of a tGrindSpot */
    vialto_i_PG_maxdefects = 5000,     /* records that tPGDefects must have room for */
    vialto_mxScallops = 1000,          /* whole scallops of a lot */
    vialto_i_maxspots = 100000,        /* spots of a must-grind analysis */
    vialto_mxProfile = 10000000,       /* points of a spectrum's stretch */
    vialto_mxFreq = 100000,            /* points of its grid */
    vialto_mxWIM = 50000,              /* samples of a WIM error index */
    vialto_mxbase = 1000,              /* samples of the bridge filter's window */
    vialto_repeatability_runs = 10,    /* of pcbia_dlldrv */
    vialto_repeatability_points = 1057 /* of each of these runs */
};

/* ------------------------------------------------------------------------------------------------
 * Records
 * --------------------------------------------------------------------------------------------- */

/* What went wrong. The texts are blank-padded and have no terminating zero. */
typedef struct tEvent {
    char description[256]; /* in words */
    char routine[256];     /* where: the innermost routine first, its callers behind slashes */
    int32_t error_code;    /* vialto_code_... */
    int32_t error_type;    /* vialto_type_... */
} tEvent;

/* The text of a tEvent without its padding, as a C string: written to `text`, which is returned. */
static VIALTO_INLINE char* vialto_c_string(const char padded[vialto_text_length],
                                           char text[vialto_text_length + 1]) {
    int length = vialto_text_length;
    int i;
    while (length > 0 && padded[length - 1] == ' ') {
        --length;
    }
    for (i = 0; i < length; ++i) {
        text[i] = padded[i];
    }
    text[length] = '\0';
    return text;
}

/* Settings of a filter, and the valid range of its result. */
typedef struct tFiltCon {
    int32_t iMainFilterType; /* idx_filttyp_... */
    int32_t iSubFilterType;  /* idx_subfilttyp_... */
    int32_t iOutType;        /* idx_filtouttyp_... */
    int32_t if250mmFilter;   /* quarter car: 250 mm moving average ahead of it, 1 yes, 2 no */
    float xBW4IniBaseLength; /* m; carried, read by no filter */
    float xLongWavelength;   /* m; cutoff or base length of a high-pass */
    float xShortWavelength;  /* m; of a low-pass, of anti-smoothing and of the bridge filter */
    float xSimuVelocity;     /* km/h; speed of the Ride Number filter */
    float xPowerWeighting;   /* carried, read by no filter */
    int32_t iBeginElemIdx;   /* out: first valid element of the filtered profile, from 0 */
    int32_t iEndElemIdx;     /* out: last valid element, from 0 */
} tFiltCon;

/* One lot of a profilograph trace. The heights have the unit of the trace. */
typedef struct tPGLot {
    int32_t iStart;      /* first sample of the lot in the trace, from 0 */
    int32_t iEnd;        /* its last sample, inclusive */
    float xBBUpperStart; /* out: upper edge of the blanking band at the lot's start */
    float xBBUpperEnd;   /* out: upper edge at the lot's end */
    float xBBLowerStart; /* out: lower edge at the lot's start */
    float xBBLowerEnd;   /* out: lower edge at the lot's end */
    float RawPI;         /* out: profile index from raw heights, height per metre */
    float RndPI;         /* out: profile index from rounded heights, height per metre */
} tPGLot;

/* One defect of a profilograph trace. */
typedef struct tPGDefect {
    int32_t iStart; /* first sample in the trace, from 0 */
    int32_t iEnd;   /* last sample, inclusive */
    float BeginX;   /* m; distance of its beginning, sample 0 standing at 0.0 */
    float BeginY;   /* height of the blanking band there */
    float EndX;     /* m; distance of its end */
    float EndY;     /* height of the blanking band there */
    float MxHts;    /* height above or below the band */
    int32_t Type;   /* idx_pgdefect_... */
} tPGDefect;

/* A diamond grinder. */
typedef struct tGrinderSetup {
    float WheelBase;           /* m; from the centre of one tandem axle to that of the other */
    float HeadPosition;        /* 0.0 at the axle ahead of the head, 1.0 at the other */
    float TandemSpread;        /* m; distance between the two wheels of an axle */
    float ShortWavelength;     /* m; base length of the wheels' moving average */
    float MaxGrindingDepth_mm; /* mm; a deeper cut is flagged, and still carried out */
} tGrinderSetup;

/* One stretch to grind. */
typedef struct tGrindSpot {
    int32_t iNumPasses;     /* 0 to 10 */
    int32_t iDirection[10]; /* idx_grinddir_... of each pass */
    float xDepth_mm[10];    /* mm; cutting level of each pass above the plane of the wheels */
    int32_t iStart;         /* first sample, from 0 */
    int32_t iEnd;           /* last sample, inclusive */
} tGrindSpot;

/* Settings of the must-grind analysis. */
typedef struct tMustGrindCfg {
    int32_t iRideIndexType; /* idx_ridests_...; may be rewritten by the analysis */
    int32_t if250mmFilter;  /* 1 yes, 2 no */
    float xRideThreshold;   /* limit of the ride statistic, m/m */
    float xSlideBaseLength; /* m; base length of the continuous ride statistic */
    int32_t ib_grindopt[3]; /* 1 runs: dropping short spots, joining close ones, trying each spot */
    float x_grinddepth_min; /* carried, used by no step */
    float x_grindlength_min; /* m; shortest grind spot */
    float x_grindgap_min;    /* m; smallest gap between spots */
} tMustGrindCfg;

/* Settings and results of a profile comparison. */
typedef struct tProfAnalysis {
    int32_t if_outputfilt;      /* 1 hands the filtered profiles back */
    int32_t if_padding;         /* 2 filters the profile as it stands, otherwise a padded copy */
    int32_t if_upsampling;      /* 2 compares at the reference profile's interval */
    int32_t iIndexMaxCorr;      /* out: place of the best offset in the result arrays, from 0 */
    float x_normsampleinterval; /* m; step of the comparison, out of CC_CoeffArray */
    float x_offset_max;         /* m; largest offset tried to either side */
    float x_opt_finalcc;        /* out: final coefficient at the best offset, -100 to 100 */
    float x_opt_shapefactor;    /* out: shape factor there, 0 to 1 */
    float x_opt_roughcc;        /* out: roughness coefficient there, percent */
    float x_opt_offset;         /* m; out: the best offset */
    float x_ref_iri;            /* m/m; out: ride index of the reference profile */
    float x_test_iri;           /* m/m; out: ride index of the test profile */
    float x_iri_diff;           /* out: (test - reference) / reference, percent */
} tProfAnalysis;

/* One profile of a comparison. */
typedef struct tProfinfo {
    int32_t i_raw_leadin;   /* first sample of the section of interest, from 0 */
    int32_t i_raw_leadout;  /* last sample of the section, inclusive */
    int32_t i_filt_leadin;  /* out: 0 */
    int32_t i_filt_leadout; /* out: points left after trimming, minus 1 */
    float x_sampleinterval; /* m */
    tFiltCon tFilter;       /* filter settings; never written */
} tProfinfo;

/* Settings of the joint identification. */
typedef struct tJointIDCfg {
    int32_t i_jntid_method; /* idx_jntid_... */
    int32_t if_skewed;      /* written to the diagnostic file, read by no step */
    float xDomJointSpacing; /* m; nominal joint spacing */
} tJointIDCfg;

/* ------------------------------------------------------------------------------------------------
 * Ride indices of one track
 * --------------------------------------------------------------------------------------------- */

/*
 * ride_dlldrv: overall ride index of one profile.
 *
 * Given:
 *   ifExcludeLeaveout  1 leaves out the samples whose exclusion flag is not 0; any other value
 *                      ignores the flags
 *   if250mmFilter      1 takes a 250 mm moving average ahead of the quarter car, 2 does not
 *   iRideIndex         idx_ridests_IRI or idx_ridests_RN
 *   iSizeDataArray     number of samples N
 *   dataarray          [N] elevations, m
 *   exclusion_flags    [N]; read only if ifExcludeLeaveout is 1, and may be null otherwise
 *   xStepSize          sample interval, m
 * Returned:
 *   xRideIndex         IRI: mean absolute filtered slope, m/m (times 1000: m/km).
 *                      RN: root mean square of the filtered slope, m/m; it is not yet the Ride
 *                      Number on its scale of 0 to 5.
 *                      -1.0 when every sample was left out, which is a success.
 *
 * Failures (the routine is "ride_dlldrv" for all of them):
 *   101  "i_rideindexsel is not within range"          iRideIndex other than 1, 2, 3 or 9
 *   101  "two RN is no longer supported"               iRideIndex 3
 *   100  "WIM error index should not be normal ride stats analysis"    iRideIndex 9
 *                                                      (a failure of wimindex_dlldrv comes first)
 *   101  "tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-"
 *   101  "the calculated IRI is not a number"          a profile no longer than the moving average
 *                                                      (or one interval), or a filtered slope that
 *                                                      holds a NaN, as, within the intervals of
 *                                                      note 3, from a NaN or an infinity in the
 *                                                      profile
 *   With a selector that is refused xRideIndex is untouched; after the filter's own failure it is
 *   0.0, after the last one a NaN.
 *
 * Notes:
 *  1. The quarter car runs at 80 km/h for IRI and at 80.46 km/h for RN, through the whole profile;
 *     an excluded sample only leaves the sum and the divisor.
 *  2. The last 250 mm (or the last sample, without the moving average) carry no filtered slope and
 *     never count.
 *  3. Use it up to intervals of 1 m (IRI) or 0.25 m (RN): beyond, the 32-bit power series of the
 *     state transition loses its digits, and the result may be wrong, or infinite, without a
 *     failure.
 *  4. The initial slope is taken over the first 11 m (IRI) or 19 m (RN) and divided by one interval
 *     too many, deliberately.
 *
 * Reference: ASTM E1926 (IRI), ASTM E1489 (RN); M. W. Sayers, "On the Calculation of International
 * Roughness Index from Longitudinal Road Profile", Transportation Research Record 1501, 1995.
 */
VIALTO_API int32_t VIALTO_CALL ride_dlldrv(int32_t ifExcludeLeaveout, int32_t if250mmFilter,
                                           int32_t iRideIndex, int32_t iSizeDataArray,
                                           const float* dataarray, const int32_t* exclusion_flags,
                                           float xStepSize, float* xRideIndex, tEvent* event);

/*
 * rideseg_dlldrv: ride index of each of a row of consecutive segments of one profile.
 *
 * Given:
 *   if250mmFilter      1 takes a 250 mm moving average ahead of the quarter car, 2 does not
 *   iRideIndex         idx_ridests_IRI or idx_ridests_RN
 *   iSizeDataArray     number of samples N
 *   dataarray          [N] elevations, m
 *   xStepSize          sample interval, m
 *   iNumSegments       number of segments K
 *   iNumSegmentPoints  [K] samples of each segment, both boundary samples included; the last
 *                      element counts for nothing, since the last segment runs to the last valid
 *                      sample
 * Returned:
 *   xOutput            [K] index of each segment, as ride_dlldrv gives it for a profile; -1.0 for a
 *                      segment without samples, which is a success
 *   xSegLength         [K] length of each segment, m: (its samples - 1) * xStepSize; 0.0 without
 *                      samples
 *
 * Failures (the routine is "rideseg_dlldrv" for all of them):
 *   100  "End index of data points exceeds the input array size. Double-check segment points."
 *                                                      a segment before the last ends beyond sample
 *                                                      N; the segments before it are written
 *   100  "WIM error index should not be segemeted ride stats analysis"    iRideIndex 9
 *                                                      (a failure of wimindex_dlldrv comes first)
 *   and the other failures of ride_dlldrv; the outputs are untouched then.
 *
 * Notes:
 *  1. Consecutive segments share their boundary sample: the last sample of one is the first of the
 *     next.
 *  2. A segment of no samples (an element of 0) still moves the next one back by one sample, and a
 *     negative element moves it back by as many more, deliberately. A segment that then starts
 *     before the first sample is cut to the samples that exist.
 *  3. The last segment ends with the last valid sample, 250 mm (or one sample, without the moving
 *     average) before the end of the profile. An earlier segment that reaches there counts the
 *     samples behind it as zeros.
 *  4. One segment has the index of ride_dlldrv without exclusions.
 *
 * Reference: as for ride_dlldrv.
 */
VIALTO_API int32_t VIALTO_CALL rideseg_dlldrv(int32_t if250mmFilter, int32_t iRideIndex,
                                              int32_t iSizeDataArray, const float* dataarray,
                                              float xStepSize, int32_t iNumSegments,
                                              const int32_t* iNumSegmentPoints, float* xOutput,
                                              float* xSegLength, tEvent* event);

/*
 * ridecon_dlldrv: continuous ride index of one profile, one value per sample.
 *
 * Given:
 *   if250mmFilter   1 takes a 250 mm moving average ahead of the quarter car, 2 does not; with
 *                   iRideIndexType 9 it is the bridging switch of wimindex_dlldrv
 *   xStepSize       sample interval, m
 *   xBaseLength     base length of the moving statistic, m; without effect with iRideIndexType 9
 *   iRideIndexType  idx_ridests_IRI, idx_ridests_RN or idx_ridests_WIM
 *   iSizeDataArray  number of samples N
 *   dataarray       [N] elevations, m
 * Returned:
 *   xOutput         [N] m/m. IRI: mean absolute filtered slope over the base length about the
 *                   sample. RN: its root mean square. WIM: as wimindex_dlldrv gives it.
 *
 * Failures (the routine is "ridecon_dlldrv" for all of them), xOutput untouched:
 *   101  "moving average base length is greater the sampling distance"
 *                                                      xBaseLength makes N samples or more, rounded
 *                                                      (N 500 at 0.1 m: 49.94 m pass, 49.95 m fail)
 *   and the other failures of ride_dlldrv or, with iRideIndexType 9, those of wimindex_dlldrv.
 *
 * Notes:
 *  1. The moving mean is a centred one at the ends, too: what it is taken of, the absolute slope
 *     for IRI and its square for RN, goes on beyond either end along a line fitted through its last
 *     half base length. So the mean can be negative near an end: the IRI is then negative, the RN
 *     statistic 0.0.
 *  2. The slopes behind the last valid sample enter the mean as zeros, deliberately, so that the
 *     statistic falls over the last half base length.
 *  3. With a base length below two intervals nothing is smoothed: the result is the absolute
 *     filtered slope, for RN as the root of its square.
 *
 * Reference: as for ride_dlldrv; AASHTO R 54 for the use of a continuous index.
 */
VIALTO_API int32_t VIALTO_CALL ridecon_dlldrv(int32_t if250mmFilter, float xStepSize,
                                              float xBaseLength, int32_t iRideIndexType,
                                              int32_t iSizeDataArray, const float* dataarray,
                                              float* xOutput, tEvent* event);

/* ------------------------------------------------------------------------------------------------
 * Ride indices of two tracks
 * --------------------------------------------------------------------------------------------- */

/*
 * ride2chan_dlldrv: overall ride index of two wheel tracks.
 *
 * Given:
 *   ifExcludeLeaveout  1 leaves out the samples whose exclusion flag is not 0, in both tracks; any
 *                      other value ignores the flags
 *   if250mmFilter      1 takes a 250 mm moving average ahead of the quarter car, 2 does not
 *   iRideIndex         idx_ridests_HRI, idx_ridests_MRI or idx_ridests_2ChanRN
 *   iSizeDataArray     number of samples N of each track
 *   dataarray1         [N] elevations of the left track, m
 *   dataarray2         [N] elevations of the right track, m
 *   exclusion_flags    [N]; null only if ifExcludeLeaveout is not 1. The diagnostic file shows the
 *                      first of them in any case.
 *   xStepSize          sample interval, m
 * Returned:
 *   xRideIndex         HRI: IRI of the mean of the two profiles, m/m; MRI: mean of the tracks' IRI,
 *                      m/m; both -1.0 when every sample was left out, which is a success.
 *                      Ride Number: 5 exp(-160 PTRN) with PTRN the root mean square of the RN
 *                      filter's slopes (m/m) of both tracks; 0.0 when every sample was left out.
 *
 * Failures (the routine is "ride2chan_dlldrv" for all of them):
 *   100  "only HRI, MRI, and 2-Chan-RN allowed in the 2-channel analysis"
 *                                              xRideIndex is untouched
 *   101  "tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-"
 *                                              xRideIndex is 0.0 with HRI, otherwise untouched
 *   101  "the calculated IRI is not a number"  HRI and MRI, as for ride_dlldrv: xRideIndex is a NaN
 *                                              with HRI, and with MRI if only the right track
 *                                              fails; otherwise untouched
 *
 * Notes:
 *  1. With the same profile twice HRI, MRI and IRI are one number.
 *  2. **The Ride Number of profiles that hold a NaN or an infinity is a NaN, and no failure**, as
 *     it is without a valid filtered sample. The samples from 250 mm before it (one sample, without
 *     the moving average) to the end of the road are affected; where all of them are left out, the
 *     Ride Number is that of the others. In sample 1, or in the one that ends the first 19 m (the
 *     last one of a shorter profile), it affects them all.
 *
 * Reference: ASTM E1926, ASTM E1489; M. W. Sayers, "Two Quarter-Car Models for Defining Road
 * Roughness: IRI and HRI", Transportation Research Record 1215, 1989; M. W. Sayers and S. M.
 * Karamihas, "Estimation of Rideability by Analyzing Longitudinal Road Profile", Transportation
 * Research Record 1536, 1996.
 */
VIALTO_API int32_t VIALTO_CALL ride2chan_dlldrv(int32_t ifExcludeLeaveout, int32_t if250mmFilter,
                                                int32_t iRideIndex, int32_t iSizeDataArray,
                                                const float* dataarray1, const float* dataarray2,
                                                const int32_t* exclusion_flags, float xStepSize,
                                                float* xRideIndex, tEvent* event);

/*
 * rideseg2chan_dlldrv: ride index of two wheel tracks for each of a row of consecutive segments.
 *
 * Given:
 *   if250mmFilter, iRideIndex, iSizeDataArray, dataarray1, dataarray2, xStepSize
 *                                      as for ride2chan_dlldrv
 *   iNumSegments, iNumSegmentPoints    as for rideseg_dlldrv
 * Returned:
 *   xOutput                            [K] index of each segment, in the unit of ride2chan_dlldrv;
 *                                      -1.0 for a segment without samples, which is a success
 *   xSegLength                         [K] length of each segment, m
 *
 * Failures (the routine is "rideseg2chan_dlldrv" for all of them):
 *   100  "only HRI, MRI, and 2-Chan-RN allowed in the 2-channel analysis"
 *   100  "End index of data points exceeds the input array size. Double-check segment points."
 *                                      as for rideseg_dlldrv: the earlier segments' xSegLength is
 *                                      written; their xOutput is final with HRI, untouched with
 *                                      MRI, and PTRN, m/m, with the Ride Number
 *   101  the other failures of ride2chan_dlldrv; the outputs are untouched, but for xSegLength when
 *        only the right track's MRI fails
 *
 * Notes:
 *  1. With the Ride Number a segment without samples has the xSegLength of the segment before it
 *     (0.0 for the first one), deliberately; with HRI and MRI it has 0.0.
 *  2. A segment whose filtered slopes are all exactly 0.0 has the Ride Number -1.0, deliberately.
 *  3. MRI averages -1.0 like any number.
 *  4. The notes of rideseg_dlldrv hold here, too.
 *  5. **A NaN or an infinity in a track is no failure with the Ride Number**: the segments that
 *     hold it (or reach to within 250 mm before it) and all that follow are -1.0, with the
 *     xSegLength of their samples. In the sample that ends the first 19 m (the last one of a
 *     shorter profile) it makes all segments -1.0.
 *
 * Reference: as for ride2chan_dlldrv.
 */
VIALTO_API int32_t VIALTO_CALL rideseg2chan_dlldrv(int32_t if250mmFilter, int32_t iRideIndex,
                                                   int32_t iSizeDataArray, const float* dataarray1,
                                                   const float* dataarray2, float xStepSize,
                                                   int32_t iNumSegments,
                                                   const int32_t* iNumSegmentPoints, float* xOutput,
                                                   float* xSegLength, tEvent* event);

/*
 * ridecon2chan_dlldrv: continuous ride index of two wheel tracks, one value per sample.
 *
 * Given:
 *   if250mmFilter, iRideIndex, iSizeDataArray, dataarray1, dataarray2, xStepSize
 *                  as for ride2chan_dlldrv
 *   xBaseLength    base length of the moving statistic, m
 * Returned:
 *   xOutput        [N] HRI, MRI: the continuous IRI (ridecon_dlldrv) of the mean profile, or the
 *                  mean of the tracks' continuous IRI, m/m; negative near an end where that is.
 *                  Ride Number: 5 exp(-160 PTRN) with the left track's moving root mean square.
 *
 * Failures (the routine is "ridecon2chan_dlldrv" for all of them):
 *   100  "only HRI, MRI, and 2-Chan-RN allowed in the 2-channel analysis"
 *   101  "moving average base length is greater the sampling distance"
 *                  as for ridecon_dlldrv
 *   101  the other failures of ride2chan_dlldrv
 *   xOutput is untouched.
 *
 * Notes:
 *  1. The right track has no influence on the continuous Ride Number, deliberately.
 *  2. The continuous Ride Number is 0.0 at the first sample. With a base length below two intervals
 *     it is not smoothed, and 0.0 behind the last valid sample, too.
 *  3. Notes 1 to 3 of ridecon_dlldrv hold here, too.
 *  4. **A NaN or an infinity in the left track gives the Ride Number 5.0, that of a perfect road,
 *     and no failure**: from half a base length (and the 250 mm of the moving average) before it to
 *     the end of the road, note 2 apart. In the sample that ends the first 19 m (the last one of a
 *     shorter profile) it does so to the whole road.
 *
 * Reference: as for ride2chan_dlldrv.
 */
VIALTO_API int32_t VIALTO_CALL ridecon2chan_dlldrv(int32_t if250mmFilter, int32_t iRideIndex,
                                                   int32_t iSizeDataArray, const float* dataarray1,
                                                   const float* dataarray2, float xStepSize,
                                                   float xBaseLength, float* xOutput,
                                                   tEvent* event);

/* ------------------------------------------------------------------------------------------------
 * WIM error index
 * --------------------------------------------------------------------------------------------- */

/*
 * wimindex_dlldrv: WIM error index of one profile, one value per sample: how strongly the roughness
 * around a position would disturb a weigh-in-motion scale placed there.
 *
 * Given:
 *   iBridgingFilter     1 runs the bridge filter (base length 0.25 m) first; any other value does
 *                       not
 *   xStepSize           sample interval, m
 *   xShroudingDistance  written to the diagnostic file and otherwise without effect
 *   iSizeDataArray      number of samples N
 *   dataarray           [N] elevations, m
 * Returned:
 *   xOutput             [N] index, m/m; behind the last sample of the bridge filter 0.0
 *
 * Failures (the routine is "wimindex_dlldrv" for all of them), xOutput untouched:
 *   100  "Current JQV is not suitable to handle large data set. Sorry for the inconvenience"
 *                                                      N > 50000
 *   101  "ibase .gt. mxbase"                           the bridge filter's base length exceeds 1000
 *                                                      samples
 *   101  "iter .gt. mxiter, hung up."                  a level of the bridge filter does not settle
 *   101  "Highpass cutoff is below the threshold value (~ 2 x Step * 0.86). Try again with a larger
 *        value."                                       an interval above about 9.53 m
 *   101  "Lowpass cutoff is below the threshold value(~ 2 * Step / 0.86). Try again with a larger
 *        value."                                       an interval above about 0.46 m
 *
 * Notes:
 *  1. The index is the absolute slope of the profile between the wavelengths 1.07 m and 16.45 m,
 *     each sample taking the largest of its own and of all others', weighted down by the distance:
 *     over 15.24 m to 1/e for the samples before it, over 1.524 m for those after it. So a rough
 *     spot shades far ahead of it in the direction of travel, and little behind it.
 *  2. A bridge filter's window longer than the profile leaves no sample: the result is 0.0
 *     everywhere.
 *  3. **A single NaN or infinity in the profile makes the index 0.0 at every sample, and is no
 *     failure.** With bridging a NaN or a minus infinity is left out of its windows, and a plus
 *     infinity fails in the bridge filter.
 *  4. Elevations for the bridge filter should lie within about 16 m of 0.0, beyond which 32-bit
 *     heights are too coarse for its levels to settle: subtract a constant first.
 *  5. ridecon_dlldrv with iRideIndexType 9 and if250mmFilter in the place of iBridgingFilter is the
 *     same analysis.
 *
 * Reference: ASTM E1318 (weigh-in-motion scales); S. M. Karamihas and T. D. Gillespie, "Advancement
 * of Smoothness Criteria for WIM Scale Approaches", UMTRI-2004-12, 2004.
 */
VIALTO_API int32_t VIALTO_CALL wimindex_dlldrv(int32_t iBridgingFilter, float xStepSize,
                                               float xShroudingDistance, int32_t iSizeDataArray,
                                               const float* dataarray, float* xOutput,
                                               tEvent* event);

/* ------------------------------------------------------------------------------------------------
 * Spectrum and rolling straightedge
 * --------------------------------------------------------------------------------------------- */

/*
 * psd_dll: power spectral density of a stretch of profile.
 *
 * Given:
 *   iBeginElemIdx      first sample of the stretch, from 0
 *   iEndElemIdx        last sample of the stretch, inclusive
 *   iPSDType           idx_psdtyp_elevation: density of elevation, m^3 (m^2 per cycle/m);
 *                      idx_psdtyp_slope: density of slope, m
 *   iOctaveBands       idx_psdband_octave: a grid of frequencies with iPointsPerOctave points per
 *                      octave; idx_psdband_even: an evenly spaced one
 *   iPointsPerOctave   points per octave; below 1 stands for 6
 *   xFreqInterval      cycles/m; spacing of the even grid. Below the lowest frequency that the
 *                      stretch allows, and for a NaN, it is that frequency.
 *   iSizeDataArray     number of points N of the stretch, iEndElemIdx - iBeginElemIdx + 1
 *   xStepSize          sample interval, m
 *   xProfile           the whole profile, at least iEndElemIdx + 1 elevations, m
 * Returned:
 *   xFreq              [N] grid frequencies, cycles/m
 *   xPSD               [N] one-sided densities at them
 *   iFreqBegin         first valid element of xFreq and xPSD, from 0
 *   iFreqEnd           last valid element, below iFreqBegin where there is none
 *   Elements outside iFreqBegin to iFreqEnd are untouched.
 *
 * Failures (outputs are untouched):
 *   101  "profile data exceeds maximum allowed - may change later"    N above 10,000,000
 *   101  "iPSDType is not well-defined"                               other than 1 and 2
 *   101  "iOctaveBands is not well-defined"                           other than 1 and 2
 *        The routine is "psd_drv/psd_dll" for these three.
 *   100  "iBeginElemIdx is negative"                                  routine "psd_dll"
 *
 * Notes:
 *  1. With p the power of 2 at or above N, the lowest frequency is 1 / (xStepSize * (p - 1)). The
 *     octave grid begins at it and has it as its smallest step; the even grid begins at its
 *     spacing. The octave grid passes the Nyquist frequency, 0.5 / xStepSize, by one point, the
 *     even one by two, unless it ends at 100,000 points before. The last two points have no value.
 *  2. Element i is the mean density between the middles of the grid's spaces below and above it:
 *     arithmetic middles in the even grid, geometric ones in the octave grid. Where the grid is
 *     finer than the transform, a band that holds no bin of its own takes the value of the one
 *     before. Bands that end below the first bin above the mean, or above the last bin below the
 *     Nyquist frequency, have no value.
 *  3. The stretch is differenced, less its mean slope, and transformed as a whole. The transform
 *     has the power of 2 at or above N - 1 points, with zeros behind the stretch; where N - 1 is
 *     above a power of 2 by up to 7 parts in a million, that power is its length, and the
 *     differences behind it take no part beyond the mean.
 *  4. N governs: points of the stretch behind iEndElemIdx are not read and count as 0.0. N of 1 or
 *     less is a success with the empty range 0 to -1.
 *  5. The diagnostic file holds the table of xFreq and xPSD, which takes longer to write than the
 *     analysis where the grid has tens of thousands of points.
 *
 * Reference: J. S. Bendat, A. G. Piersol, "Random Data: Analysis and Measurement Procedures".
 */
VIALTO_API int32_t VIALTO_CALL psd_dll(int32_t iBeginElemIdx, int32_t iEndElemIdx, int32_t iPSDType,
                                       int32_t iOctaveBands, int32_t iPointsPerOctave,
                                       float xFreqInterval, int32_t iSizeDataArray, float xStepSize,
                                       const float* xProfile, float* xFreq, float* xPSD,
                                       int32_t* iFreqBegin, int32_t* iFreqEnd, tEvent* event);

/*
 * rse_dlldrv: deflection under a rolling straightedge.
 *
 * Given:
 *   iSizeDataArray     number of samples N
 *   xStepSize          sample interval, m
 *   xStrLeng           length of the straightedge, m
 *   xProfile           [N] elevations, m
 * Returned:
 *   xDeflection        [N] m; the height at the middle of the straightedge less the mean of the
 *                      heights at its two ends, 0.0 outside the valid range
 *   xRMSvertacc        root mean square of the vertical acceleration that the deflection stands
 *                      for, per unit speed squared, 1/m
 *   iBeginelemIdx      first valid element of xDeflection, from 0
 *   iEndelemIdx        last valid element, from 0
 *
 * Failures (the routine is "rse_dlldrv"; outputs are untouched):
 *   100  "xStrLeng is negative or not a number"
 *
 * Notes:
 *  1. With b half the length in samples, the valid range leaves b samples free at each end where b
 *     is whole (to 1e-5 of a sample), and otherwise the whole number of samples above b: the height
 *     at an end that falls between two samples is interpolated along the straight line.
 *  2. The acceleration is that of a point at unit speed on the circle through the three points of
 *     contact: 2 * deflection / (xStrLeng / 2)^2.
 *  3. A profile too short for the straightedge is a success: all deflections are 0.0, and
 *     iBeginelemIdx is greater than iEndelemIdx. xRMSvertacc is then zero, or a NaN where the
 *     profile is short by exactly one sample.
 *  4. The diagnostic file is called "rse_dlldrv2.txt".
 *
 * Reference: EN 13036-7, "Irregularity measurement of pavement courses: the straightedge test".
 */
VIALTO_API int32_t VIALTO_CALL rse_dlldrv(int32_t iSizeDataArray, float xStepSize, float xStrLeng,
                                          const float* xProfile, float* xDeflection,
                                          float* xRMSvertacc, int32_t* iBeginelemIdx,
                                          int32_t* iEndelemIdx, tEvent* event);

/* ------------------------------------------------------------------------------------------------
 * Profilograph
 * --------------------------------------------------------------------------------------------- */

/*
 * pgfilt_dll: trace of a simulated profilograph.
 *
 * A rigid beam rests on pairs of wheels and carries a sensing wheel at its middle. The trace is the
 * profile at the sensing wheel less the mean height of all support wheels.
 *
 * Given:
 *   iStartIndex        first profile sample to use, from 0
 *   iEndIndex          last profile sample to use, inclusive
 *   xStepSize          sample interval, m
 *   iNumWheelOffsets   number of wheel pairs, at least 1
 *   iNumPoints         length of the host's profile; written to the diagnostic file, and used for
 *                      nothing else: that the arrays reach to iEndIndex is the host's promise
 *   xWheelOffsets      [iNumWheelOffsets] distance of each pair ahead of and behind the sensing
 *                      wheel, m, in any order and with either sign (note 3)
 *   xProfile           [iEndIndex + 1] the host's whole profile
 * Returned:
 *   xPGTrace           [iEndIndex + 1] the trace, in the unit of the profile and at its indexes.
 *                      Only BeginElemIdx to EndElemIdx are written. It may be the array xProfile.
 *   BeginElemIdx       first valid sample of xPGTrace, from 0
 *   EndElemIdx         last valid sample, inclusive
 *
 * Failures (no output is written):
 *   101  "nsamp < 2*maxsampbegin", routine "pgfilter/pgfilt_dll"        the stretch is too short
 *        for the beam: 2 m is not less than the number of samples, m being one more than the reach
 *        of the longest pair in intervals, which is rounded up unless the wheels stand on a sample.
 *        Equality fails as well, whatever the words say, and so does an iEndIndex before
 *        iStartIndex, wherever the two lie.
 *   101  "maxsampbegin > minsampend", routine "pgfilter/pgfilt_dll"     no sample has all wheels on
 *        the stretch; the test above leaves nothing for this one
 *   100  "xWheelOffsets holds a negative offset that reaches outside the stretch", routine
 *        "pgfilter/pgfilt_dll"                                          see note 3
 *   100  "iNumWheelOffsets is not positive", "xWheelOffsets holds an offset that is not finite",
 *        "iStartIndex is negative", "iEndIndex makes the stretch longer than 2147483647 samples",
 *        routine "pgfilt_dll"
 *
 * Notes:
 *  1. A wheel within 1e-5 intervals of a sample stands on it. Any other wheel stands on the
 *     straight line between its two neighbours.
 *  2. All pairs weigh the same; a pair at distance 0.0 counts the sample below the sensing wheel
 *     twice.
 *  3. The longest pair alone sets the valid samples. A negative offset lets the wheels of its pair
 *     change places: the trace is the same where they stand on samples, and elsewhere their heights
 *     are those of the line through the two samples nearer by, prolonged to the wheel. It is served
 *     where these samples are no farther off than the longest pair reaches.
 *
 * Reference: ASTM E1274, Measuring Pavement Roughness Using a Profilograph.
 */
VIALTO_API int32_t VIALTO_CALL pgfilt_dll(int32_t iStartIndex, int32_t iEndIndex, float xStepSize,
                                          int32_t iNumWheelOffsets, int32_t iNumPoints,
                                          const float* xWheelOffsets, const float* xProfile,
                                          float* xPGTrace, int32_t* BeginElemIdx,
                                          int32_t* EndElemIdx, tEvent* event);

/*
 * pgindex_dll: profile index of the lots of a profilograph trace, and the list of its scallops.
 *
 * Each lot is detrended by itself with its least-squares line. What leaves the blanking band about
 * that line is a scallop; the index of the lot is the sum of their heights per metre.
 *
 * Given:
 *   iStartIndex   first trace sample to use, from 0
 *   iEndIndex     last trace sample to use, inclusive; before iStartIndex, the stretch is empty
 *   xStepSize     sample interval, m
 *   xPGSettings   [idx_pgset_count] in the order of idx_pgset_..., heights in the unit of the
 *                 trace:
 *                   BlankingBand      full width of the band about the trend line
 *                   MinScallopWidth   m; narrowest scallop that counts
 *                   MinScallopHeight  lowest scallop that counts
 *                   ScallopRound      rounding step of scallop heights; 0.0 or less for none
 *                   BumpCutoffHeight  written to the diagnostic file, without any effect
 *                   BumpChordlength   m; likewise
 *   iNumPoints    length of the host's trace; written to the diagnostic file, and used for nothing
 *                 else: that xPGTrace reaches to iEndIndex is the host's promise
 *   xPGTrace      [iEndIndex + 1] the host's whole trace. It may be null if no lot has more than
 *                 one sample
 *   iNumLots      number of lots
 *   tPGLots       [iNumLots] iStart and iEnd of each lot, from 0 in the host's trace; lots come in
 *                 any order, and may overlap or leave gaps
 *   iNumBumps     number of records in tPGBumps, read only; above 5000 it counts as 5000, below 0
 *                 as 0
 * Returned:
 *   tPGLots       [iNumLots] the band and the two indexes of each lot; iStart and iEnd stay
 *   iNumDefects   number of records written to tPGDefects
 *   tPGDefects    [vialto_i_PG_maxdefects] the scallops: lot by lot, the partial one in which the
 *                 lot starts, the whole ones in the order in which they close, the partial one in
 *                 which it ends
 *   tPGBumps      [iNumBumps] the host's own records, moved by iStartIndex: iStart and iEnd by as
 *                 many samples (saturating at the ends of int32), BeginX and EndX by
 *                 iStartIndex * xStepSize. No step fills this list. It may be null when it holds
 *                 no record.
 *
 * Failures (tPGLots and tPGBumps are not written; iNumDefects counts the defects of the lots before
 * the failing one; tPGDefects keeps what was written, with indexes and distances that count from
 * iStartIndex). The routine of the first four is "pgindex/pgindex_dll":
 *   101  "End location of a defect exceeds the profile length."
 *        a lot of more than one sample reaches outside iStartIndex to iEndIndex
 *   101  "maximum allowable scallops exceeded for a segment"
 *        a partial scallop at the start of a lot would come on top of 1000 whole ones
 *   101  "maximum allowable scallops exceeded for the entire trace"
 *        more than 5000 defects
 *   101  "PG Defects > i_PG_maxdefects. Try cropping the profiles"
 *        the same; the test above leaves nothing for it
 *   101  "maximum number of scallops exceeds the program limits. Try with smaller segments",
 *        routine "pgindex/pgindex/pgindex_dll": a lot has a candidate, be it too low, after 1000
 *        whole scallops
 *   101  "iNumDefects > i_PG_maxdefects", routine "pgindex_dll"
 *        never comes, likewise
 *   100  "iStartIndex is negative", "iEndIndex makes the stretch longer than 2147483647 samples",
 *        routine "pgindex_dll": a lot of more than one sample would be read. No output is written
 *
 * Notes:
 *  1. A lot of one sample, or with iEnd before iStart, gets -1.0 in both indexes and 0.0 in its
 *     band fields, wherever it lies. The lots around it count as neighbours. Only exactly -1.0
 *     means this: an index may be negative where a partial scallop leaves it (note 4).
 *  2. A lot is divided by (iEnd - iStart) * xStepSize: its length runs from its first sample to its
 *     last.
 *  3. A sample on the edge of the band is inside it. A scallop that is wide enough adds its raw
 *     height to RawPI even if the rules make it 0.0; it then is no defect. One that is too narrow
 *     counts nowhere. A partial scallop needs 0.33 of the width of a whole one.
 *  4. A partial scallop at a lot's start always is a defect, but it adds to the indexes only if it
 *     is higher than the partial scallop at the end of the lot counted before. If it is not, that
 *     earlier one leaves the indexes of its lot as well, taken by this lot's length, except for the
 *     second lot in the list. So a scallop across a boundary counts twice or not at all:
 *     deliberate.
 *  5. The crossings of partial scallops, their last samples and the heights BeginY and EndY (taken
 *     one interval further along the trend line than the distances) are deliberately asymmetric.
 *     The iEnd of a partial scallop at a lot's start is one less than its last sample, and so may
 *     be iStart - 1. Its EndX is projected along its last two samples: infinite where these are
 *     equal, a NaN where both lie on the edge of the band; EndY is then infinite or a NaN as well.
 *  6. **A lot with a NaN or an infinite sample has no scallops: its indexes are 0.0, as those of a
 *     perfect road.** Its band, which is a NaN, tells the two apart.
 *
 * Reference: ASTM E1274, Measuring Pavement Roughness Using a Profilograph.
 */
VIALTO_API int32_t VIALTO_CALL pgindex_dll(int32_t iStartIndex, int32_t iEndIndex, float xStepSize,
                                           const float* xPGSettings, int32_t iNumPoints,
                                           const float* xPGTrace, int32_t iNumLots, tPGLot* tPGLots,
                                           int32_t* iNumDefects, tPGDefect* tPGDefects,
                                           const int32_t* iNumBumps, tPGDefect* tPGBumps,
                                           tEvent* event);

/* ------------------------------------------------------------------------------------------------
 * Grinding
 * --------------------------------------------------------------------------------------------- */

/*
 * grindsimu_dlldrv: diamond grinder on one profile.
 *
 * The cutting head runs between two tandem axles and takes off what stands above the plane of the
 * wheels. The wheels ride on a moving average of the profile, which is cut together with it, so
 * that the wheels behind the head ride on the ground surface.
 *
 * Given:
 *   xStepSize       sample interval, m
 *   iNumGrindSpots  number of spots
 *   nsamp           number of samples N
 *   setup           the machine, a tGrinderSetup
 *   tGrindSpots     [iNumGrindSpots] stretches to grind, in the order of the work; samples are
 *                   counted from 0, and a stretch may reach beyond the profile
 *   xProfile        [N] elevations, m
 * Returned:
 *   xProfile        [N] the ground profile, m
 *   iGrindFlags     [N] idx_grindflag_...: 1 not ground, 2 ground no deeper than
 *                   MaxGrindingDepth_mm, 3 ground deeper
 *
 * Failures:
 *   100  "tGrindSpots holds a spot with more than ten passes"          grindsimu_dlldrv
 *        Nothing is ground.
 *   101  "moving average base length is greater the sampling distance"
 *                                             mvgavg/filtcon_drv/grindsimu/grindsimu_dlldrv
 *        ShortWavelength is not shorter than the profile. Outputs untouched.
 *   101  "grinding direction is not defined correctly"                 grindsimu/grindsimu_dlldrv
 *        An iDirection other than 1 and 2. The passes before it remain done, with their flags.
 *
 * Notes:
 *  1. A pass of direction 1 runs towards higher samples. With h = TandemSpread / 2, the wheels
 *     stand WheelBase * HeadPosition - h and + h ahead of the head, and
 *     WheelBase * (1 - HeadPosition) - h and + h behind it, each rounded to whole samples. The
 *     plane at the head is interpolated between the axles, an axle's height being the mean of its
 *     wheels.
 *     The wheels average the profile over ShortWavelength. Such a mean lies half a sample late for
 *     an even number of samples, and a whole one for a whole odd number of intervals; the plane is
 *     that much too low uphill, which cuts even road, and too high downhill. Deliberate. Take the
 *     road's grade off first, or a ShortWavelength a little below an odd number of intervals.
 *  2. A sample that stands more than xDepth_mm above the plane is cut to exactly that level. A
 *     sample for which the head or a wheel would stand off the profile is not cut.
 *  3. A later pass overwrites a flag only where it cuts: a sample flagged 3 becomes 2 when a
 *     shallower cut follows. The flag judges the cut of one pass, not the sum of the passes.
 *  4. The diagnostic file, grindsimu_dlldrv.txt, is opened only after the grinder has succeeded: a
 *     failure writes no file, and that of an earlier call stays. It holds a table of distance,
 *     profile before and profile after.
 *
 * Reference: FHWA, "Concrete Pavement Preservation Guide", second edition, 2014, chapter "Diamond
 * Grinding and Grooving".
 */
VIALTO_API int32_t VIALTO_CALL grindsimu_dlldrv(float xStepSize, int32_t iNumGrindSpots,
                                                int32_t nsamp, const tGrinderSetup* setup,
                                                const tGrindSpot* tGrindSpots, float* xProfile,
                                                int32_t* iGrindFlags, tEvent* event);

/*
 * grindsimu_2chan_dlldrv: the same spots on the profiles of two wheel tracks.
 *
 * Given:
 *   xStepSize .. tGrindSpots    as for grindsimu_dlldrv; one machine and one list for both tracks
 *   xProfile1, xProfile2        [N] elevations of the two tracks, m
 * Returned:
 *   xProfile1, xProfile2        [N] the ground profiles, m
 *   iGrindFlags                 [N] the greater of the two tracks' flags
 *
 * Failures: those of grindsimu_dlldrv, with "/grindsimu_2chan_dlldrv" behind its routine; among
 * them memory that a track's call lacks. Refused arguments, the number of passes included, name
 * grindsimu_2chan_dlldrv alone. iGrindFlags is then untouched; xProfile1 may be ground already, and
 * a profile whose pass fails keeps the passes before it.
 *
 * Note: each track is a whole call of grindsimu_dlldrv, with its diagnostic file; the file of the
 * second track stays, beside grindsimu_2chan_dlldrv.txt.
 *
 * Reference: as for grindsimu_dlldrv.
 */
VIALTO_API int32_t VIALTO_CALL grindsimu_2chan_dlldrv(float xStepSize, int32_t iNumGrindSpots,
                                                      int32_t nsamp, const tGrinderSetup* setup,
                                                      const tGrindSpot* tGrindSpots,
                                                      float* xProfile1, float* xProfile2,
                                                      int32_t* iGrindFlags, tEvent* event);

/*
 * mustgrind_dlldrv: which stretches of a road must be ground.
 *
 * The grinder of grindsimu_dlldrv is asked what it would cut over the whole road. Of these spots,
 * short ones are dropped, close ones are joined, and those are kept whose grinding alone improves
 * the continuous ride statistic where it is above the threshold: each of the three on request.
 *
 * Given:
 *   nsamp        number of samples N
 *   xStepSize    sample interval, m
 *   cfg          settings, a tMustGrindCfg. iRideIndexType is idx_ridests_IRI, _RN or _WIM;
 *                idx_ridests_HRI runs as IRI
 *   setup        the machine, a tGrinderSetup
 *   xProfile     [N] elevations, m; not changed
 * Returned:
 *   cfg          iRideIndexType is rewritten from idx_ridests_HRI to idx_ridests_IRI
 *   iGrindFlags  [N] idx_grindflag_...: 1 leave, 2 grind, no deeper than MaxGrindingDepth_mm,
 *                3 grind deeper
 *
 * Failures (the routine of the first two is "mustgrind_dlldrv", with iGrindFlags untouched; they
 * stand ahead of every refusal but that of a null cfg):
 *   101  "Ride Index None is not allowed in the RideStatCont analysis"   idx_ridests_None
 *   101  "Ride Index is un-defined"                any selector but None, IRI, RN, TwoRN, HRI, WIM
 *   101  "i_maxspots exceeded for grinding - try smaller sections"
 *                                   tossout_shortgrindspots/mustgrind/mustgrind_dlldrv
 *        More than 100000 spots.
 *   101  "i_maxspots exceeded for out-of-spec - try smaller sections"
 *                                   out_of_spec_spots/mustgrind/mustgrind_dlldrv
 *        More than 100000 stretches out of specification.
 *   The failures of the grinder's moving average reach the host through
 *   "mvgavg/filtcon_drv/grindsimu/material_takenout_area/mustgrind/mustgrind_dlldrv", those of
 *   ridecon_dlldrv's analysis (idx_ridests_TwoRN among them) through
 *   ".../ridecon_drv/out_of_spec_spots/mustgrind/mustgrind_dlldrv" or, for a road with one spot
 *   ground, "evaluate_impact" in the place of "out_of_spec_spots". A failing analysis leaves
 *   iGrindFlags in the state that it had reached; 0 is a sample not looked at.
 *
 * Notes:
 *  1. xRideThreshold is compared with the statistic in m/m: an IRI of 2 m/km is 0.002. With
 *     idx_ridests_WIM the statistic is the WIM error index: if250mmFilter switches its bridging
 *     filter (and still trims the end, note 4), and xSlideBaseLength smooths nothing, but still
 *     bounds the search of note 4.
 *  2. With ib_grindopt all 0, the flags are those of the grinder over the whole road. Joining and
 *     trying work on the spots that dropping has listed: without it they do nothing.
 *  3. Lengths and gaps are differences of sample numbers, after rounding to whole samples: of
 *     spots, one that is a sample longer than x_grindlength_min stays. A gap that is joined gets
 *     flag 2. After a join and then a wide gap, the next comparison takes up the spot behind the
 *     one that has grown, even where that spot was joined itself.
 *  4. Out of specification is looked for from half a base length behind the start to half a base
 *     length (and 250 mm, with the filter) ahead of the end. A stretch that is open where the
 *     search begins counts from the first sample of the profile instead, with its length.
 *  5. A spot helps when the statistic of one sample out of specification falls by more than
 *     1.1920929e-7, in a stretch that starts at most 50 feet before it, or anywhere behind its
 *     start. Each spot is tried on the untouched profile, not on top of those before it.
 *  6. There is no diagnostic file.
 *  7. The 50 feet of note 5 are measured, for the n-th spot that is tried, to the n-th of all spots
 *     that dropping has listed, the dropped ones among them. Behind a spot that was dropped or
 *     joined, that is one further back: deliberate.
 *
 * Reference: FHWA, "Concrete Pavement Preservation Guide", second edition, 2014, chapter "Diamond
 * Grinding and Grooving"; for the statistic, see ridecon_dlldrv.
 */
VIALTO_API int32_t VIALTO_CALL mustgrind_dlldrv(int32_t nsamp, float xStepSize, tMustGrindCfg* cfg,
                                                const tGrinderSetup* setup, const float* xProfile,
                                                int32_t* iGrindFlags, tEvent* event);

/*
 * mustgrind_2chan_dlldrv: the same for the profiles of two wheel tracks.
 *
 * Given:
 *   nsamp, xStepSize, setup    as for mustgrind_dlldrv
 *   cfg                        settings. iRideIndexType is idx_ridests_RN; or idx_ridests_TwoRN,
 *                              with xRideThreshold on the Ride Number's scale of 0 to 5; or
 *                              idx_ridests_HRI or _MRI, which run as IRI
 *   xProfile1, xProfile2       [N] elevations of the two tracks, m; not changed
 * Returned:
 *   cfg                        iRideIndexType is rewritten from HRI or MRI to idx_ridests_IRI
 *   iGrindFlags                [N] the greater of the two tracks' flags
 *
 * Failures (the routine of the first three is "mustgrind_2chan_dlldrv"):
 *   101  "Ride Index None is not allowed in the mustgrind_2chan_dlldrv analysis"
 *   101  "idx_ridests_IRI is not allowed in the mustgrind_2chan_dlldrv analysis"
 *        A host that repeats a call with a record that was rewritten finds this failure.
 *   101  "Ride Index is un-defined"                any other selector
 *        As in mustgrind_dlldrv, these stand ahead of every refusal but that of a null cfg.
 *   Those of mustgrind_dlldrv, the path ending in
 *   "mustgrind/mustgrind_2chan/mustgrind_2chan_dlldrv".
 *   iGrindFlags is untouched after each of them.
 *
 * Note: each track is analysed for itself. A threshold T on the Ride Number's scale becomes
 * ln(T / 5) / -160 on that of the RN statistic.
 *
 * Reference: as for mustgrind_dlldrv; for the Ride Number, ASTM E1489.
 */
VIALTO_API int32_t VIALTO_CALL mustgrind_2chan_dlldrv(
    int32_t nsamp, float xStepSize, tMustGrindCfg* cfg, const tGrinderSetup* setup,
    const float* xProfile1, const float* xProfile2, int32_t* iGrindFlags, tEvent* event);

/* ------------------------------------------------------------------------------------------------
 * Profile comparison
 * --------------------------------------------------------------------------------------------- */

/*
 * CC_CoeffArray: number of offsets and step of a profile comparison. The call comes ahead of
 * ccfunc, and again whenever x_offset_max or a sample interval changes.
 *
 * Given:
 *   analysis         if_upsampling, x_offset_max
 *   ptrProfinfo      [2] the reference and the test profile; only x_sampleinterval is read, with
 *                    if_upsampling 2 that of the reference profile alone
 * Returned:
 *   iCroxCorrPoints  number of offsets to try, the length of ccfunc's result arrays: 2 n + 1, n
 *                    being x_offset_max in steps, to the nearest whole number
 *   analysis         x_normsampleinterval, the comparison step, m
 *
 * Failures (the routine is "CC_CoeffArray"; iCroxCorrPoints and the record are untouched):
 *   100  "x_sampleinterval of the reference profile is not a positive finite number", and the same
 *        of the test profile where it is read
 *   100  "x_offset_max is not a finite number"
 *
 * Notes:
 *  1. With if_upsampling 2 the step is the reference profile's interval. Otherwise it is the
 *     smaller interval divided by the first whole number, from 1, that makes the larger interval a
 *     whole number of steps and a remainder below 0.02 steps: 25 mm and 50 mm give 25 mm, 30 mm and
 *     40 mm give 10 mm. A quotient just below a whole number does not count. When no step above
 *     1 mm serves, it is 5.08 mm.
 *  2. x_offset_max 0 gives 1 offset. A negative x_offset_max gives a count of 1 or less, and the
 *     sweep of a count of 0 or less is empty. The count saturates at plus and minus 2147483647.
 *  3. The diagnostic file starts with date and time.
 */
VIALTO_API int32_t VIALTO_CALL CC_CoeffArray(int32_t* iCroxCorrPoints, tProfAnalysis* analysis,
                                             const tProfinfo* ptrProfinfo, tEvent* event);

/*
 * ccfunc: agreement of a test profile with a reference profile, by cross-correlation. Both are
 * filtered, cut to their sections of interest and brought to one step; then the test profile slides
 * along the reference profile, and at each offset the overlapping stretches are compared.
 *
 * Given:
 *   iSizeDataArrayRef   number of samples of the reference profile, NR
 *   iSizeDataArrayTest  number of samples of the test profile, NT
 *   iCroxCorrPoints     number of offsets N, from CC_CoeffArray
 *   xDataArrayRef       [NR] reference profile, elevations
 *   xDataArrayTest      [NT] test profile, elevations in the same unit
 *   analysis            if_outputfilt, if_padding, if_upsampling, x_offset_max and, from
 *                       CC_CoeffArray, x_normsampleinterval
 *   ptrProfinfo         [2] the reference and the test profile: section of interest, sample
 *                       interval and filter settings
 * Returned:
 *   xFinalCC            [N] final coefficient at each offset: roughness coefficient (correlation
 *                       of the normalised stretches, -100 to 100 percent) times shape factor
 *                       (ratio of the smaller to the larger root mean square, 0 to 1)
 *   xOffsetArray        [N] offset of each place k, from 0: k x_normsampleinterval - x_offset_max,
 *                       m. At place N/2 the sections start together; before it the beginning of
 *                       the test profile is skipped, behind it that of the reference profile. The
 *                       label 0.0 stands there only if x_offset_max is a whole number of steps
 *                       and x_normsampleinterval is that step.
 *   analysis            iIndexMaxCorr, the first place with the largest final coefficient (0 if
 *                       all are NaN); x_opt_..., the results at that place; x_ref_iri and
 *                       x_test_iri, the IRI of the unfiltered sections; x_iri_diff, which divides
 *                       by x_ref_iri without a guard
 *   ptrProfinfo         i_filt_leadin, i_filt_leadout
 *   xDataArrayRefFilt   [NR], if if_outputfilt is 1: the filtered and trimmed reference profile
 *                       before resampling, its first sample at the front: valid up to
 *                       i_filt_leadout, from there to i_raw_leadout what the filter left, zeros
 *                       behind i_raw_leadout. Written as soon as both profiles are filtered, and so
 *                       there also when the sweep fails. Otherwise untouched, and may be null.
 *   xDataArrayTestFilt  [NT] the same of the test profile
 *
 * Failures (the routine is "ccfunc" for all of them):
 *   100  "i_raw_leadin of the reference profile lies before the first sample",
 *        "i_raw_leadout of the reference profile lies behind the last sample",
 *        and the same of the test profile
 *   100  "x_sampleinterval of the reference profile is not a positive finite number",
 *        and the same of the test profile
 *   100  "iSizeDataArrayRef is too large for padding", above 715827883 samples;
 *        the same of iSizeDataArrayTest
 *   100  "the resampled profile is too long", above 2147483647 samples
 *   101  "xDataArrayPadFilt size exceeded", "xDataArrayRefFiltlc size exceeded": padding is on, and
 *        the filter ends outside the profile (both texts serve either profile)
 *   101  "x_num_act should not be zero": the offset is larger than a profile
 *   101  "number of points is less than zero": the offset is as large as a profile
 *   101  "max(x_rms_test, x_rms_base) is close to zero": both stretches are flat
 *   101  the filter's own:
 *        "Illegal Main filter type"                    iMainFilterType is no idx_filttyp_...
 *        "moving average base length is greater the sampling distance",
 *        "hi-pass moving average base length is greater the sampling distance"
 *                                                      a moving average as long as the profile
 *        "tFiltCon%if250mmFilter is not either 1 -yes- nor 2 -no-",
 *        "tFiltCon%iOutType is not either idx_filtouttyp_elevation nor idx_filtouttyp_slope"
 *                                                      of a quarter car
 *        "iBWFilterType is not within range"           Butterworth: iSubFilterType is not 0 to 4
 *        "Highpass cutoff is below the threshold value (~ 2 x Step * 0.86). Try again with a larger
 *        value."                                       Butterworth, below about 1.73 intervals
 *        "Lowpass cutoff is below the threshold value(~ 2 * Step / 0.86). Try again with a larger
 *        value."                                       Butterworth, below about 2.32 intervals
 *        "low corner frequency (f0-fc) <= 0.0",
 *        "high corner frequency (f0+fc) >= nyquist"    band about a centre frequency
 *        "the baselength is only 1 sampling interval- check your input",
 *        "the baselength greater than the profile length - check your input"
 *                                                      anti-smoothing, as at antismth_dlldrv
 *        "ibase .gt. mxbase", "iter .gt. mxiter, hung up."
 *                                                      bridge filter, as at wimindex_dlldrv
 *   Those of the ride index as at ride_dlldrv.
 *   After a refusal (code 100, but for the too long profile) nothing is written. After any other
 *   failure xFinalCC holds -999.0 and xOffsetArray 999.0 at each place that was not reached,
 *   i_filt_leadin and i_filt_leadout are set for the profiles that were filtered, and the analysis
 *   record is untouched, except that a failure of the ride index leaves iIndexMaxCorr set.
 *
 * Notes:
 *  1. Unless if_padding is 2, the filter runs through a copy of the profile that is reflected about
 *     either end, and the middle is taken back.
 *  2. Deliberately the last points are lost: of a section that reaches the end of the profile one
 *     sample is left out with if_padding 2, and two otherwise, even if the filter loses none. The
 *     very last one is 0.0 in the filtered profile where it was padded. The first points stay, even
 *     where the filter has none of its own: with if_padding 2 anti-smoothing leaves 0.0 there.
 *  3. A section whose last sample lies before its first keeps no sample, and the sweep fails.
 *  4. A flat stretch beside one that is not flat gives a NaN at that offset; the optimum passes it
 *     by. An overlap of one sample is flat.
 *  5. The step is computed again from the sample intervals; x_normsampleinterval and x_offset_max
 *     only label the offsets and may be any numbers: one that is not finite only spoils the labels.
 *  6. Coefficients away from the optimum come from running sums and lie within 1e-6 of their scale
 *     of those computed offset by offset; the optimum is exactly the one so computed.
 *  7. The diagnostic file starts with date and time and ends with a table of all offsets.
 *
 * Reference: S. M. Karamihas, "Development of Cross Correlation for Objective Comparison of
 * Profiles", University of Michigan Transportation Research Institute, UMTRI-2002-36, 2002;
 * AASHTO R 56, certification of inertial profiling systems.
 */
VIALTO_API int32_t VIALTO_CALL ccfunc(int32_t iSizeDataArrayRef, int32_t iSizeDataArrayTest,
                                      int32_t iCroxCorrPoints, const float* xDataArrayRef,
                                      const float* xDataArrayTest, tProfAnalysis* analysis,
                                      tProfinfo* ptrProfinfo, float* xFinalCC, float* xOffsetArray,
                                      float* xDataArrayRefFilt, float* xDataArrayTestFilt,
                                      tEvent* event);

/*
 * pcbia_dlldrv: repeatability of an instrument from ten runs over one stretch.
 *
 * Given:
 *   xRunData         [10 x 1057] elevations, m: all of run 1, then all of run 2, and so on
 *   xRefProfile      [1057] the true profile, m
 * Returned:
 *   xPrecision       mm; mean over the points of the standard deviation between the runs, with
 *                    divisor 9
 *   xBias            mm; mean over the points of |mean of the runs - reference|
 *   iPrecisionClass  1 up to and including 0.38 mm, 2 up to 0.76 mm, 3 up to 2.5 mm, 0 above that
 *                    and for a NaN
 *   iBiasClass       1 up to and including 1.25 mm, 2 up to 2.5 mm, 3 up to 6.25 mm, 0 above that
 *                    and for a NaN
 *
 * Failures: those common to all functions.
 *
 * Notes:
 *  1. The classes are decided in metres, before the results are turned into millimetres.
 *
 * Reference: ASTM E950, longitudinal profile with an accelerometer-established inertial reference.
 */
VIALTO_API int32_t VIALTO_CALL pcbia_dlldrv(const float* xRunData, const float* xRefProfile,
                                            float* xPrecision, float* xBias,
                                            int32_t* iPrecisionClass, int32_t* iBiasClass,
                                            tEvent* event);

/* ------------------------------------------------------------------------------------------------
 * Joints
 * --------------------------------------------------------------------------------------------- */

/*
 * joint_id_dlldrv: joints and cracks of a concrete pavement in two wheel tracks.
 *
 * Given:
 *   settings           method and nominal joint spacing; the skewed flag changes nothing
 *   xStepSize          sample interval, m
 *   iSizeDataArray     number of samples N of each track
 *   xLeftProfile       [N] elevations, m
 *   xRightProfile      [N] elevations, m
 * Returned, for each track:
 *   iLeftTypes, iRightTypes          [N] idx_jnttyp_...: 1 a joint, 2 a crack, 0 past the last
 *                                    feature: count the entries up to the first 0
 *   xLeftLocations, xRightLocations  [N] m from the start of the profile, ascending. Past the last
 *                                    feature they hold what the host gave them, -1.0, or the
 *                                    position of a detection of this or an earlier pass.
 *
 * Failures (each routine ends in "joint_id_cal/joint_id/joint_id_dlldrv", which is the whole of it
 * for the first two):
 *   100  "idx_jntid_valleydetect is not implemented"         method 2
 *   100  "i_jntid_method is not defined"                     method other than 1 to 4
 *   100  "No joints found using the curled-edge method"      routine "joint_id_curledge/..."
 *   100  "No joints found using the anti-smooth method"      routine "joint_id_antismooth/..."
 *   101  "hi-pass moving average base length is greater the sampling distance"    method 4, routine
 *        "mvgavg/filtcon_drv/joint_id_curledge/...": a profile no longer than 50 m, at an interval
 *        up to 0.125 m; above that the straightedge runs on the unfiltered profile
 *   101  "the baselength is only 1 sampling interval- check your input"           method 3, routine
 *        "antismooth/filtcon_drv/joint_id_antismooth/...": an interval above 0.25 m
 *   101  "the baselength greater than the profile length - check your input"      method 3, same
 *        routine: a profile no longer than about 0.25 m
 *   101  "x_num_act should not be zero"                      method 3, routine
 *        "norm_cal/joint_id_antismooth/...": a profile no longer than about 0.5 m
 *   The outputs keep what was written before.
 *
 * Notes:
 *  1. The method runs over the left track, then the right, with a strict threshold, and again with
 *     a lower one, up to 20 times, until the features of the right track, joints and cracks
 *     together, exceed 0.9 of what the spacing promises. The left track has no say in that.
 *  2. A track without a detection in some pass ends the analysis with methods 3 and 4, although a
 *     lower threshold might find some. Method 1 then reports one joint, at whatever the first
 *     location held.
 *     **A NaN in a track does not fail.** Method 1 ignores it. With method 3 the whole track, and
 *     with method 4 all from about 27 m ahead of it on, is without a detection: **the analysis says
 *     "No joints found", or the list of features stops early.**
 *  3. Thresholds at first: a step of 2.032 mm (method 1), 4 root mean squares below the smoothed
 *     profile (3), a deflection of 3 mm either way of a 3 m straightedge (4). A detection nearer
 *     than 0.9144 m (method 1) or 0.5 m (methods 3 and 4) to the last feature found is the same
 *     feature.
 *  4. The first feature is a joint, and so is every one more than 0.95 spacings behind the last
 *     joint. Those between are cracks.
 */
VIALTO_API int32_t VIALTO_CALL joint_id_dlldrv(const tJointIDCfg* settings, float xStepSize,
                                               int32_t iSizeDataArray, const float* xLeftProfile,
                                               const float* xRightProfile, int32_t* iLeftTypes,
                                               int32_t* iRightTypes, double* xLeftLocations,
                                               double* xRightLocations, tEvent* event);

/*
 * joint_fault_dlldrv: height difference of the slabs at each joint of a concrete pavement.
 *
 * Given:
 *   iSizeDataArray     number of samples N
 *   iNumJoints         number of joints J; with none, nothing else is looked at, and the call
 *                      succeeds
 *   xStepSize          sample interval, m
 *   xJointWindow       half width of the window round a joint whose samples belong to neither slab,
 *                      mm
 *   xProfile           [N] elevations, mm
 *   xJointLoc          [J] joints, m from the start of the profile, such as joint_id_dlldrv finds
 * Returned:
 *   xFault             [J] mm, positive where the slab behind stands higher. A joint nearer than
 *                      2.4384 m, in whole samples, to the first or the last sample is passed over:
 *                      its entry keeps what it held. (At an interval above 1.6256 m a joint at the
 *                      first of several samples is not.)
 *
 * Failures (the faults of the joints before it stand, the others are untouched; each routine ends
 * in "jntfault_drv/joint_fault_dlldrv", which is the whole of it for the first one):
 *   101  "profile segment for current joint is not defined properly"    a joint behind the end of
 *                                          the profile or ahead of its start
 *   101  "x or y data contains NaN"        routine "polycurvfit/joint_func/...": a sample of a slab
 *                                          is not a number
 *   101  "error calling imsl drcurv"       the same routine: the window, or an interval above
 *                                          1.6256 m, leaves fewer than two samples a slab
 *
 * Notes:
 *  1. A straight line is fitted to each slab from 2.4384 m away up to the window. The fault is the
 *     difference of the two lines h + 1 samples past the joint, h being half the whole intervals
 *     in 0.3 m, cut to a whole number: 0.175 m past it at an interval of 0.025 m, 0.2 m at 0.1 m,
 *     and one interval past it at any above 0.15 m.
 *  2. The diagnostic file lists the slopes of the slabs, too. That of the right slab is taken
 *     against the direction of travel, deliberately, and enters the mean slope like that.
 *
 * Reference: AASHTO R 36, "Standard Practice for Evaluating Faulting of Concrete Pavements".
 */
VIALTO_API int32_t VIALTO_CALL joint_fault_dlldrv(int32_t iSizeDataArray, int32_t iNumJoints,
                                                  float xStepSize, float xJointWindow,
                                                  const float* xProfile, const double* xJointLoc,
                                                  float* xFault, tEvent* event);

/* ------------------------------------------------------------------------------------------------
 * Anti-smoothing
 * --------------------------------------------------------------------------------------------- */

/*
 * antismth_dlldrv: distance of each sample of a profile from the mean of a window around it.
 *
 * Given:
 *   xStepSize       sample interval dx, m
 *   xBaseLength     base length of the window, m, of which L samples are made (note 3)
 *   iSizeDataArray  number of samples N
 *   xProfile        [N] elevations, m
 * Returned:
 *   xProfile        [N] absolute difference between a sample and the mean of its window, m; 0.0
 *                   where there is none, outside iBeginElemIdx to iEndElemIdx
 *   iBeginElemIdx   first valid element, from 0
 *   iEndElemIdx     last valid element, from 0; below iBeginElemIdx when there is none
 *
 * Failures, all outputs untouched:
 *   100  "xBaseLength is negative or not a number"    (the routine is "antismth_dlldrv")
 *   101  "the baselength is only 1 sampling interval- check your input"         L is 1: a base
 *                                                  length below one interval, 0.0 among them
 *   101  "the baselength greater than the profile length - check your input"    N is not above L
 *   The routine is "antismooth/filtcon_drv/antismth_dlldrv" for the last two.
 *
 * Notes:
 *  1. The sample in the middle of a window is its h-th, one more than half the intervals, so the
 *     window is symmetric about it when L is odd. Element i of the result belongs to sample i + h
 *     of the profile: the shift is not undone, deliberately.
 *  2. iBeginElemIdx is h and iEndElemIdx N - L - 1: the elements before h are cleared although they
 *     could be computed, deliberately.
 *  3. L is xBaseLength / dx + 0.5, rounded, in 32-bit arithmetic: one more than the whole intervals
 *     of the base length. The float just below 1, 2, 4, 8, ... intervals counts as that number, so
 *     that 0.99999994 intervals make 2 samples, and what lies between 0.0 and about -1.5e-8 dx as
 *     0.0. The h of note 1 is xBaseLength / (2 dx) + 0.5, rounded likewise.
 *  4. The diagnostic file is opened only after the analysis has succeeded: a failure writes none,
 *     and that of an earlier call stays. It lists, for each valid element, the distance i dx,
 *     element i of the profile and element i of the result with its sign. When it cannot be opened
 *     all outputs stay untouched, as after any other failure.
 *
 * Reference: M. W. Sayers and S. M. Karamihas, "The Little Book of Profiling", University of
 * Michigan, 1998 (moving-average filters and their high-pass form, which anti-smoothing is).
 */
VIALTO_API int32_t VIALTO_CALL antismth_dlldrv(float xStepSize, float xBaseLength,
                                               int32_t iSizeDataArray, float* xProfile,
                                               int32_t* iBeginElemIdx, int32_t* iEndElemIdx,
                                               tEvent* event);

/* ------------------------------------------------------------------------------------------------
 * Histogram
 * --------------------------------------------------------------------------------------------- */

/*
 * histgrm_dlldrv: distribution of a series of values, such as a ride index along a road.
 *
 * Given:
 *   ifExcludeLeaveout  1 leaves out the values whose mask entry is not 0; any other value takes all
 *   iNumClasses        number of classes K
 *   iSizeDataArray     number of values
 *   xLow               first class boundary, in the unit of the values like the next three
 *   xHigh              last class boundary
 *   xStep              step from one inner boundary to the next
 *   xThreshold         threshold of the exceedance percentage
 *   xDataArray         [iSizeDataArray] the values
 *   iMaskArray         [iSizeDataArray] 0 counts, any other entry masks; read only if
 *                      ifExcludeLeaveout is 1, and may be null otherwise
 * Returned:
 *   xHistogram         [K] percentage of the values in each class
 *   xAboveThreshold    percentage of the values strictly above xThreshold
 *
 * Failures (routine "imsl_owfrq/histgrm_drv/histgrm_dlldrv"):
 *   101  "error calling imsl drcurv"    no value to tally, or no class. The percentages of no
 *                                       values are then NaN; xAboveThreshold is untouched.
 *
 * Notes:
 *  1. The K - 1 boundaries are xLow, then each the one before it plus xStep, and xHigh as the last,
 *     wherever the steps have come to: the last inner class may be wider or narrower than xStep.
 *     With two classes the one boundary is xHigh; with one class there is none, and every value is
 *     in it.
 *  2. A value belongs to the first class whose upper boundary is not below it, and to the last
 *     class where there is none: the first and the last class are open-ended, a value on a boundary
 *     belongs to the class below it, a NaN to the first class. Where xHigh lies below boundaries
 *     that the steps have passed, the class below xHigh is empty.
 *  3. This function writes no diagnostic file.
 */
VIALTO_API int32_t VIALTO_CALL histgrm_dlldrv(int32_t ifExcludeLeaveout, int32_t iNumClasses,
                                              int32_t iSizeDataArray, float xLow, float xHigh,
                                              float xStep, float xThreshold,
                                              const float* xDataArray, const int32_t* iMaskArray,
                                              float* xHistogram, float* xAboveThreshold,
                                              tEvent* event);

/* ------------------------------------------------------------------------------------------------
 * Layout of the records: 4-byte words without padding, as every host has them
 * --------------------------------------------------------------------------------------------- */

#if defined(__cplusplus)
#define VIALTO_LAYOUT(condition) static_assert(condition, #condition)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define VIALTO_LAYOUT(condition) _Static_assert(condition, #condition)
#else
#define VIALTO_LAYOUT(condition) extern int vialto_layout_holds[(condition) ? 1 : -1]
#endif

VIALTO_LAYOUT(sizeof(tEvent) == 520);
VIALTO_LAYOUT(offsetof(tEvent, routine) == vialto_text_length);
VIALTO_LAYOUT(offsetof(tEvent, error_code) == 512);
VIALTO_LAYOUT(offsetof(tEvent, error_type) == 516);
VIALTO_LAYOUT(sizeof(tFiltCon) == 44);
VIALTO_LAYOUT(offsetof(tFiltCon, xBW4IniBaseLength) == 16);
VIALTO_LAYOUT(offsetof(tFiltCon, xPowerWeighting) == 32);
VIALTO_LAYOUT(offsetof(tFiltCon, iEndElemIdx) == 40);
VIALTO_LAYOUT(sizeof(tPGLot) == 32);
VIALTO_LAYOUT(offsetof(tPGLot, xBBUpperStart) == 8);
VIALTO_LAYOUT(offsetof(tPGLot, RndPI) == 28);
VIALTO_LAYOUT(sizeof(tPGDefect) == 32);
VIALTO_LAYOUT(offsetof(tPGDefect, BeginX) == 8);
VIALTO_LAYOUT(offsetof(tPGDefect, Type) == 28);
VIALTO_LAYOUT(sizeof(tGrinderSetup) == 20);
VIALTO_LAYOUT(offsetof(tGrinderSetup, MaxGrindingDepth_mm) == 16);
VIALTO_LAYOUT(sizeof(tGrindSpot) == 92);
VIALTO_LAYOUT(offsetof(tGrindSpot, xDepth_mm) == 4 + 4 * vialto_mxPasses);
VIALTO_LAYOUT(offsetof(tGrindSpot, iEnd) == 88);
VIALTO_LAYOUT(sizeof(tMustGrindCfg) == 40);
VIALTO_LAYOUT(offsetof(tMustGrindCfg, ib_grindopt) == 16);
VIALTO_LAYOUT(offsetof(tMustGrindCfg, x_grindgap_min) == 36);
VIALTO_LAYOUT(sizeof(tProfAnalysis) == 52);
VIALTO_LAYOUT(offsetof(tProfAnalysis, x_normsampleinterval) == 16);
VIALTO_LAYOUT(offsetof(tProfAnalysis, x_iri_diff) == 48);
VIALTO_LAYOUT(sizeof(tProfinfo) == 64);
VIALTO_LAYOUT(offsetof(tProfinfo, x_sampleinterval) == 16);
VIALTO_LAYOUT(offsetof(tProfinfo, tFilter) == 20);
VIALTO_LAYOUT(sizeof(tJointIDCfg) == 12);
VIALTO_LAYOUT(offsetof(tJointIDCfg, xDomJointSpacing) == 8);

#undef VIALTO_LAYOUT

#ifdef __cplusplus
}
#endif

#endif
