// Vialto for .NET: numerical analyses of measured road profiles, in one file that a host copies.
//
// Analysis has a function for each of the library's, with arrays in and out and failures as
// exceptions; Native and the records whose names start with a small t are the C interface itself.
// The library is found as the platform's loader finds it: vialto.dll, libvialto.so or
// libvialto.dylib, beside the program or on the loader's path.
using System;
using System.IO;
using System.Runtime.InteropServices;
using System.Text;

namespace Vialto
{
    /// <summary>What roughness is told by.</summary>
    public enum RideIndex
    {
        /// <summary>No index (<c>idx_ridests_None</c>); no analysis takes it.</summary>
        None = 0,
        /// <summary>International Roughness Index of one track, m/m
        /// (<c>idx_ridests_IRI</c>).</summary>
        Iri = 1,
        /// <summary>Root-mean-square statistic of the Ride Number filter, m/m: the Ride Number is
        /// 5 exp(-160 RN) (<c>idx_ridests_RN</c>).</summary>
        RN = 2,
        /// <summary>RN of two tracks, for must-grind alone (<c>idx_ridests_TwoRN</c>).</summary>
        TwoRN = 3,
        /// <summary>Half-car Roughness Index of two tracks, m/m
        /// (<c>idx_ridests_HRI</c>).</summary>
        Hri = 4,
        /// <summary>Mean Roughness Index of two tracks, m/m (<c>idx_ridests_MRI</c>).</summary>
        Mri = 5,
        /// <summary>Ride Number of two tracks, 0 to 5 (<c>idx_ridests_2ChanRN</c>).</summary>
        RideNumber = 6,
        /// <summary>WIM error index of one track, m/m (<c>idx_ridests_WIM</c>).</summary>
        Wim = 9
    }

    /// <summary>Which filter.</summary>
    public enum FilterKind
    {
        /// <summary>No filter (<c>idx_filttyp_none</c>).</summary>
        None = 0,
        /// <summary>Moving average (<c>idx_filttyp_mvgavg</c>).</summary>
        MovingAverage = 1,
        /// <summary>Quarter car with the IRI parameters (<c>idx_filttyp_IRI</c>).</summary>
        Iri = 2,
        /// <summary>Quarter car with the Ride Number parameters
        /// (<c>idx_filttyp_RN</c>).</summary>
        RN = 3,
        /// <summary>Third-order Butterworth (<c>idx_filttyp_bwfilt</c>).</summary>
        Butterworth = 4,
        /// <summary>Anti-smoothing (<c>idx_filttyp_antismooth</c>).</summary>
        AntiSmoothing = 5,
        /// <summary>Less the straight line (<c>idx_filttyp_detrend</c>).</summary>
        Detrend = 6,
        /// <summary>Bridge filter (<c>idx_filttyp_bridge</c>).</summary>
        Bridge = 7
    }

    /// <summary>What a moving average or a Butterworth filter lets pass.</summary>
    public enum FilterBand
    {
        /// <summary>For all other filters (<c>idx_subfilttyp_none</c>).</summary>
        None = 0,
        /// <summary>Between two wavelengths (<c>idx_subfilttyp_bandpass</c>).</summary>
        BandPass = 1,
        /// <summary>Long waves (<c>idx_subfilttyp_lowpass</c>).</summary>
        LowPass = 2,
        /// <summary>Short waves (<c>idx_subfilttyp_highpass</c>).</summary>
        HighPass = 3,
        /// <summary>Butterworth only: about a centre frequency
        /// (<c>idx_subfilttyp_centredband</c>).</summary>
        CentredBand = 4
    }

    /// <summary>What a filter gives.</summary>
    public enum FilterOutput
    {
        /// <summary>Elevations, m (<c>idx_filtouttyp_elevation</c>).</summary>
        Elevation = 1,
        /// <summary>Slopes, m/m (<c>idx_filtouttyp_slope</c>).</summary>
        Slope = 2
    }

    /// <summary>Which power spectral density.</summary>
    public enum Density
    {
        /// <summary>Of elevation, m^3, that is m^2 per cycle/m
        /// (<c>idx_psdtyp_elevation</c>).</summary>
        Elevation = 1,
        /// <summary>Of slope, m, that is 1 per cycle/m (<c>idx_psdtyp_slope</c>).</summary>
        Slope = 2
    }

    /// <summary>The frequencies of a spectrum.</summary>
    public enum FrequencyGrid
    {
        /// <summary>So many points per octave (<c>idx_psdband_octave</c>).</summary>
        Octave = 1,
        /// <summary>Evenly spaced (<c>idx_psdband_even</c>).</summary>
        Even = 2
    }

    /// <summary>Side of the blanking band on which a defect of a trace lies.</summary>
    public enum DefectKind
    {
        /// <summary>A bump (<c>idx_pgdefect_above</c>).</summary>
        Above = 1,
        /// <summary>A dip (<c>idx_pgdefect_below</c>).</summary>
        Below = 2
    }

    /// <summary>Where a grinder's pass is heading.</summary>
    public enum Direction
    {
        /// <summary>Towards higher sample numbers (<c>idx_grinddir_higher</c>).</summary>
        Higher = 1,
        /// <summary>Towards lower sample numbers (<c>idx_grinddir_lower</c>).</summary>
        Lower = 2
    }

    /// <summary>What becomes of a sample.</summary>
    public enum GrindFlag
    {
        /// <summary>Not ground, or not to be ground (<c>idx_grindflag_none</c>).</summary>
        None = 1,
        /// <summary>Ground no deeper than the grinder's limit
        /// (<c>idx_grindflag_within</c>).</summary>
        Within = 2,
        /// <summary>Ground deeper (<c>idx_grindflag_deeper</c>).</summary>
        Deeper = 3
    }

    /// <summary>How joints are detected.</summary>
    public enum JointMethod
    {
        /// <summary>A step between two neighbouring samples
        /// (<c>idx_jntid_stepdetect</c>).</summary>
        Step = 1,
        /// <summary>Refused: not implemented (<c>idx_jntid_valleydetect</c>).</summary>
        Valley = 2,
        /// <summary>A downward spike about the smoothed profile
        /// (<c>idx_jntid_antismooth</c>).</summary>
        AntiSmoothing = 3,
        /// <summary>A peak under the rolling straightedge (<c>idx_jntid_curledge</c>).</summary>
        CurledEdge = 4
    }

    /// <summary>What was found in a concrete pavement.</summary>
    public enum Feature
    {
        /// <summary>Nothing: the entries past the last feature
        /// (<c>idx_jnttyp_none</c>).</summary>
        None = 0,
        /// <summary>A joint of two slabs (<c>idx_jnttyp_joint</c>).</summary>
        Joint = 1,
        /// <summary>A crack between two joints (<c>idx_jnttyp_crack</c>).</summary>
        Crack = 2
    }

    /// <summary>Switches of the C interface.</summary>
    public enum Switch
    {
        /// <summary>Yes (<c>vialto_yes</c>).</summary>
        Yes = 1,
        /// <summary>No, like any other value (<c>vialto_no</c>).</summary>
        No = 2
    }

    /// <summary>Results of the functions of the C interface.</summary>
    public enum Outcome
    {
        /// <summary>The analysis was carried out (<c>vialto_success</c>).</summary>
        Success = 1,
        /// <summary>It failed (<c>vialto_failure</c>).</summary>
        Failure = 3
    }

    /// <summary>What kind of failure.</summary>
    public enum ErrorCode
    {
        /// <summary>The request cannot be served (<c>vialto_code_request</c>).</summary>
        Request = 100,
        /// <summary>A selector out of range, a numerical failure or a limit
        /// (<c>vialto_code_analysis</c>).</summary>
        Analysis = 101,
        /// <summary>A file could not be opened (<c>vialto_code_file</c>).</summary>
        File = 102
    }

    /// <summary>How bad a failure.</summary>
    public enum ErrorType
    {
        /// <summary>Fatal (<c>vialto_type_fatal</c>).</summary>
        Fatal = 1,
        /// <summary>Recoverable with some failure (<c>vialto_type_some_failure</c>).</summary>
        SomeFailure = 2,
        /// <summary>Recoverable without failure (<c>vialto_type_no_failure</c>).</summary>
        NoFailure = 3
    }

    /// <summary>Lengths that are fixed, and limits. What lies beyond a limit is a failure, or as
    /// the contract of a function says.</summary>
    public static class Limits
    {
        /// <summary>Characters of a text of an event (<c>vialto_text_length</c>).</summary>
        public const int TextLength = 256;
        /// <summary>Passes over a spot to grind (<c>vialto_mxPasses</c>).</summary>
        public const int Passes = 10;
        /// <summary>Defects of a trace, for which the library wants room
        /// (<c>vialto_i_PG_maxdefects</c>).</summary>
        public const int Defects = 5000;
        /// <summary>Whole scallops of a lot (<c>vialto_mxScallops</c>).</summary>
        public const int Scallops = 1000;
        /// <summary>Spots of a must-grind analysis (<c>vialto_i_maxspots</c>).</summary>
        public const int Spots = 100000;
        /// <summary>Points of a spectrum's stretch (<c>vialto_mxProfile</c>).</summary>
        public const int SpectrumPoints = 10000000;
        /// <summary>Points of a spectrum's grid (<c>vialto_mxFreq</c>).</summary>
        public const int Frequencies = 100000;
        /// <summary>Samples of a WIM error index (<c>vialto_mxWIM</c>).</summary>
        public const int WimSamples = 50000;
        /// <summary>Samples of the bridge filter's window (<c>vialto_mxbase</c>).</summary>
        public const int BridgeSamples = 1000;
        /// <summary>Runs of a repeatability test (<c>vialto_repeatability_runs</c>).</summary>
        public const int RepeatabilityRuns = 10;
        /// <summary>Points of each of these runs (<c>vialto_repeatability_points</c>).</summary>
        public const int RepeatabilityPoints = 1057;
    }

    /// <summary>Places of the settings of <see cref="Native.pgindex_dll"/>, heights in the unit of
    /// the trace.</summary>
    public static class PGSettings
    {
        /// <summary>Full width of the band about the trend line
        /// (<c>idx_pgset_BlankingBand</c>).</summary>
        public const int BlankingBand = 0;
        /// <summary>m; narrowest scallop that counts (<c>idx_pgset_MinScallopWidth</c>).</summary>
        public const int MinScallopWidth = 1;
        /// <summary>Lowest scallop that counts (<c>idx_pgset_MinScallopHeight</c>).</summary>
        public const int MinScallopHeight = 2;
        /// <summary>Rounding step of scallop heights (<c>idx_pgset_ScallopRound</c>).</summary>
        public const int ScallopRound = 3;
        /// <summary>Without effect (<c>idx_pgset_BumpCutoffHeight</c>).</summary>
        public const int BumpCutoffHeight = 4;
        /// <summary>m; without effect (<c>idx_pgset_BumpChordlength</c>).</summary>
        public const int BumpChordlength = 5;
        /// <summary>How many (<c>idx_pgset_count</c>).</summary>
        public const int Count = 6;
    }

    /// <summary>Settings that a highway at 25 mm is usually judged by, taken where nothing else is
    /// asked for. The guide tells where each comes from.</summary>
    public static class Defaults
    {
        /// <summary>m; below it the 250 mm average belongs ahead of a quarter car (ASTM
        /// E1926).</summary>
        public const float LongestSmoothedInterval = 0.167f;
        /// <summary>m; length of a section of a road.</summary>
        public const float Section = 100.0f;
        /// <summary>m; the other usual one.</summary>
        public const float TenthOfAMile = 160.9344f;
        /// <summary>m; base length of the moving IRI, 25 feet (AASHTO R 54).</summary>
        public const float LocalBaseLength = 7.62f;
        /// <summary>m/km; a moving IRI above it is a place to correct: 160 inches a mile.</summary>
        public const float LocalRoughness = 2.5f;
        /// <summary>km/h; 50 miles an hour.</summary>
        public const float RideNumberSpeed = 80.46f;
        /// <summary>Points per octave of a spectrum.</summary>
        public const int PointsPerOctave = 12;
        /// <summary>m; length of a straightedge (EN 13036-7).</summary>
        public const float Straightedge = 3.0f;
        /// <summary>mm; full width of the blanking band, 0.1 inch.</summary>
        public const float BlankingBand = 2.54f;
        /// <summary>m; narrowest scallop that counts, 2 feet.</summary>
        public const float ScallopWidth = 0.6f;
        /// <summary>mm; lowest scallop that counts, 0.035 inch.</summary>
        public const float ScallopHeight = 0.889f;
        /// <summary>mm; rounding step of scallop heights, 0.05 inch.</summary>
        public const float ScallopRounding = 1.27f;
        /// <summary>m; from axle to axle of a grinder, 18 feet.</summary>
        public const float GrinderWheelBase = 5.5f;
        /// <summary>Place of its head, as a share of the wheel base.</summary>
        public const float GrinderHeadPosition = 0.5f;
        /// <summary>m; between the two wheels of an axle, 3 feet.</summary>
        public const float GrinderTandemSpread = 0.9f;
        /// <summary>m; base length of the wheels' moving average, 1 foot.</summary>
        public const float GrinderWheelLength = 0.3f;
        /// <summary>mm; a deeper cut is made, and flagged.</summary>
        public const float GrinderDepthMm = 8.0f;
        /// <summary>m/m; a moving IRI of 2 m/km, above which a road is ground.</summary>
        public const float GrindThreshold = 0.002f;
        /// <summary>m; length of the shortest spot to grind.</summary>
        public const float GrindLength = 0.3f;
        /// <summary>m; smallest gap between two of them.</summary>
        public const float GrindGap = 0.3f;
        /// <summary>m; nominal spacing of the joints, 15 feet.</summary>
        public const float JointSpacing = 4.572f;
        /// <summary>mm; to either side of a joint, what belongs to neither slab.</summary>
        public const float JointWindowMm = 100.0f;
        /// <summary>m; largest offset of a comparison, to either side.</summary>
        public const float LargestOffset = 3.0f;
        /// <summary>m; window of anti-smoothing.</summary>
        public const float AntiSmoothingLength = 0.25f;

        /// <summary>Wheel offsets of a profilograph with twelve wheels in two groups, at the ends
        /// of a beam of 25 feet, m.</summary>
        public static float[] TwelveWheels
        {
            get { return new[] { 1.905f, 2.286f, 2.667f, 3.048f, 3.429f, 3.81f }; }
        }
    }

    /// <summary>Samples from <see cref="First"/> to <see cref="Last"/>, inclusive, counted from 0;
    /// none where the last lies before the first.</summary>
    public struct Stretch
    {
        /// <summary>From one sample to another, inclusive, counted from 0.</summary>
        public Stretch(int first, int last)
        {
            First = first;
            Last = last;
        }

        /// <summary>First sample, from 0.</summary>
        public int First { get; }
        /// <summary>Last sample, from 0, inclusive.</summary>
        public int Last { get; }
        /// <summary>How many samples; 0 where the last lies before the first.</summary>
        public int Count { get { return Math.Max(0, Last - First + 1); } }
    }

    /// <summary>An analysis that failed, in the library's own words.</summary>
    public sealed class VialtoException : Exception
    {
        internal VialtoException(string description, string routine, ErrorCode code, ErrorType type)
            : base(description + " (" + routine + ", code " + (int)code + ")")
        {
            Description = description;
            Routine = routine;
            ErrorCode = code;
            ErrorType = type;
        }

        /// <summary>What went wrong.</summary>
        public string Description { get; }
        /// <summary>Where: the innermost routine first, its callers behind slashes.</summary>
        public string Routine { get; }
        /// <summary>What kind of failure.</summary>
        public ErrorCode ErrorCode { get; }
        /// <summary>How bad.</summary>
        public ErrorType ErrorType { get; }
    }

    /// <summary>The index of each of K segments.</summary>
    public sealed class SegmentIndices
    {
        /// <summary>[K] in the unit of the <see cref="RideIndex"/>; -1.0 for a segment without
        /// samples.</summary>
        public float[] Index { get; internal set; }
        /// <summary>[K] length of each segment, m.</summary>
        public float[] Length { get; internal set; }
    }

    /// <summary>A one-sided power spectral density.</summary>
    public sealed class Spectrum
    {
        /// <summary>Cycles/m, ascending.</summary>
        public float[] Frequency { get; internal set; }
        /// <summary>The density at each frequency, in the unit of the
        /// <see cref="Vialto.Density"/>.</summary>
        public float[] Density { get; internal set; }
    }

    /// <summary>What a rolling straightedge shows of N samples.</summary>
    public sealed class StraightedgeResponse
    {
        /// <summary>[N] m; the height at the middle less the mean of those at the two ends, 0.0
        /// outside <see cref="Valid"/>.</summary>
        public float[] Deflection { get; internal set; }
        /// <summary>The elements of the deflection that have a value.</summary>
        public Stretch Valid { get; internal set; }
        /// <summary>Root mean square of the vertical acceleration that the deflection stands for,
        /// per unit speed squared, 1/m.</summary>
        public float RmsVerticalAcceleration { get; internal set; }
    }

    /// <summary>The trace of a profilograph over a profile of N samples.</summary>
    public sealed class ProfilographTrace
    {
        /// <summary>[N] in the unit of the profile and at its indexes; NaN outside
        /// <see cref="Valid"/>.</summary>
        public float[] Height { get; internal set; }
        /// <summary>The elements of the trace that have a value.</summary>
        public Stretch Valid { get; internal set; }
    }

    /// <summary>Index and blanking band of one lot of a trace, heights in its unit.</summary>
    public sealed class Lot
    {
        /// <summary>The samples of the lot.</summary>
        public Stretch Stretch { get; internal set; }
        /// <summary>Profile index from heights as they are, height per metre; -1.0 for a lot of one
        /// sample.</summary>
        public float RawIndex { get; internal set; }
        /// <summary>Profile index from rounded heights, height per metre.</summary>
        public float RoundedIndex { get; internal set; }
        /// <summary>Upper edge of the blanking band at the lot's start.</summary>
        public float UpperStart { get; internal set; }
        /// <summary>Upper edge at the lot's end.</summary>
        public float UpperEnd { get; internal set; }
        /// <summary>Lower edge at the lot's start.</summary>
        public float LowerStart { get; internal set; }
        /// <summary>Lower edge at the lot's end.</summary>
        public float LowerEnd { get; internal set; }
    }

    /// <summary>One defect of a trace: a scallop that counts.</summary>
    public sealed class Defect
    {
        /// <summary>Its samples in the trace.</summary>
        public Stretch Stretch { get; internal set; }
        /// <summary>Above the blanking band or below it.</summary>
        public DefectKind Kind { get; internal set; }
        /// <summary>Height above or below the band, in the unit of the trace.</summary>
        public float Height { get; internal set; }
        /// <summary>m; distance of its beginning, sample 0 standing at 0.0.</summary>
        public float Begin { get; internal set; }
        /// <summary>Height of the band at its beginning.</summary>
        public float BeginHeight { get; internal set; }
        /// <summary>m; distance of its end.</summary>
        public float End { get; internal set; }
        /// <summary>Height of the band at its end.</summary>
        public float EndHeight { get; internal set; }
    }

    /// <summary>The lots of a trace, and its defects.</summary>
    public sealed class ProfileIndex
    {
        /// <summary>In the order in which they were asked for.</summary>
        public Lot[] Lots { get; internal set; }
        /// <summary>Lot by lot.</summary>
        public Defect[] Defects { get; internal set; }
    }

    /// <summary>A diamond grinder whose head runs between two tandem axles.</summary>
    public sealed class Grinder
    {
        /// <summary>m; from axle to axle.</summary>
        public float WheelBase { get; set; } = Defaults.GrinderWheelBase;
        /// <summary>0.0 at the axle ahead of the head, 1.0 at the other.</summary>
        public float HeadPosition { get; set; } = Defaults.GrinderHeadPosition;
        /// <summary>m; between the two wheels of an axle.</summary>
        public float TandemSpread { get; set; } = Defaults.GrinderTandemSpread;
        /// <summary>m; base length of the wheels' moving average.</summary>
        public float WheelLength { get; set; } = Defaults.GrinderWheelLength;
        /// <summary>mm; a deeper cut is made, and flagged.</summary>
        public float MaxDepthMm { get; set; } = Defaults.GrinderDepthMm;

        internal tGrinderSetup Record()
        {
            return new tGrinderSetup {
                WheelBase = WheelBase, HeadPosition = HeadPosition, TandemSpread = TandemSpread,
                ShortWavelength = WheelLength, MaxGrindingDepth_mm = MaxDepthMm
            };
        }
    }

    /// <summary>One pass of a grinder over a spot.</summary>
    public struct Pass
    {
        /// <summary>A pass at a cutting level above the plane of the wheels, mm.</summary>
        public Pass(float depthMm, Direction direction = Direction.Higher)
        {
            DepthMm = depthMm;
            Direction = direction;
        }

        /// <summary>mm; cutting level above the plane of the wheels.</summary>
        public float DepthMm { get; }
        /// <summary>Where it is heading.</summary>
        public Direction Direction { get; }
    }

    /// <summary>A stretch to grind, which may reach beyond the profile.</summary>
    public sealed class GrindSpot
    {
        /// <summary>The samples from first to last, inclusive, counted from 0, in at most ten
        /// passes; without any in one pass at level 0.0.</summary>
        public GrindSpot(int first, int last, params Pass[] passes)
        {
            Stretch = new Stretch(first, last);
            Passes = passes.Length > 0 ? passes : new[] { new Pass(0.0f) };
        }

        /// <summary>The samples.</summary>
        public Stretch Stretch { get; }
        /// <summary>The passes in the order of the work.</summary>
        public Pass[] Passes { get; }

        // Passes beyond the tenth are only counted: the library refuses them.
        internal tGrindSpot Record()
        {
            var record = new tGrindSpot {
                iNumPasses = Passes.Length, iStart = Stretch.First, iEnd = Stretch.Last,
                iDirection = new Direction[Limits.Passes],
                xDepth_mm = new float[Limits.Passes]
            };
            for (int k = 0; k < Math.Min(Passes.Length, Limits.Passes); ++k)
            {
                record.iDirection[k] = Passes[k].Direction;
                record.xDepth_mm[k] = Passes[k].DepthMm;
            }
            return record;
        }
    }

    /// <summary>A ground profile of N samples.</summary>
    public sealed class Ground
    {
        /// <summary>[N] the ground profile, m.</summary>
        public float[] Profile { get; internal set; }
        /// <summary>[N] what became of each sample.</summary>
        public GrindFlag[] Flags { get; internal set; }
    }

    /// <summary>Two ground tracks of N samples.</summary>
    public sealed class GroundTracks
    {
        /// <summary>[N] the ground left profile, m.</summary>
        public float[] Left { get; internal set; }
        /// <summary>[N] the ground right profile, m.</summary>
        public float[] Right { get; internal set; }
        /// <summary>[N] the greater flag of the two tracks.</summary>
        public GrindFlag[] Flags { get; internal set; }
    }

    /// <summary>Settings of the search for what must be ground.</summary>
    public sealed class MustGrind
    {
        /// <summary>The ride index that must be kept.</summary>
        public RideIndex Index { get; set; } = RideIndex.Iri;
        /// <summary>Limit of the continuous ride index, m/m; with
        /// <see cref="RideIndex.TwoRN"/> a Ride Number, 0 to 5.</summary>
        public float Threshold { get; set; } = Defaults.GrindThreshold;
        /// <summary>m; base length of that index.</summary>
        public float BaseLength { get; set; } = Defaults.LocalBaseLength;
        /// <summary>250 mm moving average ahead of the quarter car.</summary>
        public bool MovingAverage { get; set; } = true;
        /// <summary>Drops spots that are not longer than <see cref="MinLength"/>.</summary>
        public bool DropShort { get; set; } = true;
        /// <summary>Joins spots that are closer than <see cref="MinGap"/>.</summary>
        public bool JoinClose { get; set; } = true;
        /// <summary>Keeps the spots whose grinding alone improves the index.</summary>
        public bool TryEach { get; set; } = true;
        /// <summary>m.</summary>
        public float MinLength { get; set; } = Defaults.GrindLength;
        /// <summary>m.</summary>
        public float MinGap { get; set; } = Defaults.GrindGap;

        internal tMustGrindCfg Record()
        {
            return new tMustGrindCfg {
                iRideIndexType = Index, if250mmFilter = Native.YesOrNo(MovingAverage),
                xRideThreshold = Threshold, xSlideBaseLength = BaseLength,
                ib_grindopt = new[] { Native.YesOrNo(DropShort), Native.YesOrNo(JoinClose),
                                      Native.YesOrNo(TryEach) },
                x_grindlength_min = MinLength, x_grindgap_min = MinGap
            };
        }
    }

    /// <summary>Settings of a filter; by default the quarter car of the IRI.</summary>
    public sealed class Filter
    {
        /// <summary>Which filter.</summary>
        public FilterKind Kind { get; set; } = FilterKind.Iri;
        /// <summary>What it lets pass.</summary>
        public FilterBand Band { get; set; } = FilterBand.None;
        /// <summary>What it gives.</summary>
        public FilterOutput Output { get; set; } = FilterOutput.Slope;
        /// <summary>250 mm moving average ahead of a quarter car.</summary>
        public bool MovingAverage { get; set; } = true;
        /// <summary>m; cutoff or base length of a high-pass.</summary>
        public float LongWavelength { get; set; }
        /// <summary>m; cutoff or base length of a low-pass, of anti-smoothing and of the bridge
        /// filter.</summary>
        public float ShortWavelength { get; set; }
        /// <summary>km/h; speed of the Ride Number filter.</summary>
        public float Velocity { get; set; } = Defaults.RideNumberSpeed;

        internal tFiltCon Record()
        {
            return new tFiltCon {
                iMainFilterType = Kind, iSubFilterType = Band, iOutType = Output,
                if250mmFilter = Native.YesOrNo(MovingAverage), xLongWavelength = LongWavelength,
                xShortWavelength = ShortWavelength, xSimuVelocity = Velocity
            };
        }
    }

    /// <summary>The offsets that a comparison tries.</summary>
    public sealed class ComparisonGrid
    {
        /// <summary>How many.</summary>
        public int Offsets { get; internal set; }
        /// <summary>m, from one to the next.</summary>
        public float Step { get; internal set; }
    }

    /// <summary>How a test profile agrees with a reference profile. A coefficient is the product of
    /// the roughness coefficient and the shape factor.</summary>
    public sealed class Comparison
    {
        /// <summary>Place of the best offset in the two arrays, from 0.</summary>
        public int Best { get; internal set; }
        /// <summary>m; the best offset.</summary>
        public float Offset { get; internal set; }
        /// <summary>Coefficient there, -100 to 100 percent.</summary>
        public float Coefficient { get; internal set; }
        /// <summary>Roughness coefficient there, percent: do the shapes agree?</summary>
        public float RoughnessCoefficient { get; internal set; }
        /// <summary>Shape factor there, 0 to 1: do the amplitudes?</summary>
        public float ShapeFactor { get; internal set; }
        /// <summary>m; all offsets that were tried.</summary>
        public float[] Offsets { get; internal set; }
        /// <summary>The coefficient at each of them, percent.</summary>
        public float[] Coefficients { get; internal set; }
        /// <summary>m/m; IRI of the unfiltered section of the reference profile.</summary>
        public float ReferenceIri { get; internal set; }
        /// <summary>m/m; IRI of that of the test profile.</summary>
        public float TestIri { get; internal set; }
        /// <summary>(test - reference) / reference, percent.</summary>
        public float IriDifference { get; internal set; }
        /// <summary>The filtered section of the reference profile, at its interval.</summary>
        public float[] ReferenceFiltered { get; internal set; }
        /// <summary>The filtered section of the test profile, at its interval.</summary>
        public float[] TestFiltered { get; internal set; }
    }

    /// <summary>Repeatability of an instrument. The classes are 1 to 3, the lower the better, and 0
    /// for none.</summary>
    public sealed class Repeatability
    {
        /// <summary>mm; mean standard deviation between the runs.</summary>
        public float PrecisionMm { get; internal set; }
        /// <summary>mm; mean distance of the runs' mean from the reference.</summary>
        public float BiasMm { get; internal set; }
        /// <summary>0 to 3.</summary>
        public int PrecisionClass { get; internal set; }
        /// <summary>0 to 3.</summary>
        public int BiasClass { get; internal set; }
    }

    /// <summary>The joints and cracks of one track, in the direction of travel.</summary>
    public sealed class Features
    {
        /// <summary>m from the start of the profile.</summary>
        public double[] Location { get; internal set; }
        /// <summary>What is at each location.</summary>
        public Feature[] Kind { get; internal set; }
    }

    /// <summary>The features of two tracks.</summary>
    public sealed class TrackFeatures
    {
        /// <summary>The left track's.</summary>
        public Features Left { get; internal set; }
        /// <summary>The right track's.</summary>
        public Features Right { get; internal set; }
    }

    /// <summary>An anti-smoothed profile of N samples.</summary>
    public sealed class AntiSmoothed
    {
        /// <summary>[N] m; distance of a sample from the mean about it. Element i belongs to the
        /// sample half a window behind it: the shift is not undone. 0.0 outside
        /// <see cref="Valid"/>.</summary>
        public float[] Deviation { get; internal set; }
        /// <summary>The elements that have a value.</summary>
        public Stretch Valid { get; internal set; }
    }

    /// <summary>Distribution of a series of values.</summary>
    public sealed class Histogram
    {
        /// <summary>[K] percentage of the values in each class.</summary>
        public float[] Percentages { get; internal set; }
        /// <summary>Percentage of the values above the threshold.</summary>
        public float AboveThreshold { get; internal set; }
    }

    /// <summary>A function for each analysis of the library.</summary>
    /// <remarks>
    /// <para>A profile is an array of elevations in metres, one each interval, which is in metres,
    /// too; two tracks have one length. No array that is handed over is changed. Samples are not
    /// looked at: a NaN can give a number that looks right, and no failure.</para>
    /// <para>All functions throw <see cref="VialtoException"/> with the failures that the contract
    /// of the C function tells of, <see cref="ArgumentNullException"/> for an array that is null,
    /// and <see cref="ArgumentException"/> for arrays whose lengths do not fit. Any number of
    /// threads may call at the same time.</para>
    /// <para>Most functions write a diagnostic file to the directory that the environment variable
    /// TMP names; without one, to a directory of the process that goes when it ends.</para>
    /// </remarks>
    public static class Analysis
    {
        /// <summary>Overall ride index of one profile (<c>ride_dlldrv</c>).</summary>
        /// <param name="profile">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="index"><see cref="RideIndex.Iri"/> or RN.</param>
        /// <param name="movingAverage">Takes a 250 mm moving average ahead of the quarter car, as
        /// profiles at intervals below 167 mm need it.</param>
        /// <param name="excluded">[N] whether a sample is left out, or null.</param>
        /// <returns>m/m; -1.0 when every sample was left out.</returns>
        public static float RideIndex(float[] profile, float interval,
                                      RideIndex index = Vialto.RideIndex.Iri,
                                      bool movingAverage = true, bool[] excluded = null)
        {
            int size = Size(profile, nameof(profile));
            Native.Check(Native.ride_dlldrv(
                Native.YesOrNo(excluded != null), Native.YesOrNo(movingAverage), index, size,
                profile, Mask(excluded, size), interval, out float result, out tEvent e), e);
            return result;
        }

        /// <summary>Ride index of each of a row of segments (<c>rideseg_dlldrv</c>).</summary>
        /// <param name="profile">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="segmentPoints">[K] samples of each segment, both boundary samples included:
        /// consecutive segments share one. The last element counts for nothing: the last segment
        /// runs to the end.</param>
        /// <param name="index">As in <see cref="RideIndex"/>.</param>
        /// <param name="movingAverage">As in <see cref="RideIndex"/>.</param>
        public static SegmentIndices SegmentRideIndices(
            float[] profile, float interval, int[] segmentPoints,
            RideIndex index = Vialto.RideIndex.Iri, bool movingAverage = true)
        {
            var result = Room(segmentPoints);
            Native.Check(Native.rideseg_dlldrv(
                Native.YesOrNo(movingAverage), index, Size(profile, nameof(profile)), profile,
                interval, segmentPoints.Length, segmentPoints, result.Index, result.Length,
                out tEvent e), e);
            return result;
        }

        /// <summary>Ride index about each sample (<c>ridecon_dlldrv</c>).</summary>
        /// <param name="profile">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="baseLength">m; of the moving statistic.</param>
        /// <param name="index"><see cref="RideIndex.Iri"/>, RN or Wim. With Wim the moving average
        /// is the bridging filter of <see cref="WimErrorIndex"/>, and the base length
        /// unused.</param>
        /// <param name="movingAverage">As in <see cref="RideIndex"/>.</param>
        /// <returns>[N] m/m.</returns>
        public static float[] ContinuousRideIndex(
            float[] profile, float interval, float baseLength = Defaults.LocalBaseLength,
            RideIndex index = Vialto.RideIndex.Iri, bool movingAverage = true)
        {
            var result = new float[Size(profile, nameof(profile))];
            Native.Check(Native.ridecon_dlldrv(
                Native.YesOrNo(movingAverage), interval, baseLength, index, result.Length, profile,
                result, out tEvent e), e);
            return result;
        }

        /// <summary>Overall ride index of two wheel tracks (<c>ride2chan_dlldrv</c>).</summary>
        /// <param name="left">[N] elevations, m.</param>
        /// <param name="right">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="index"><see cref="RideIndex.Mri"/>, Hri or RideNumber.</param>
        /// <param name="movingAverage">As in <see cref="RideIndex"/>.</param>
        /// <param name="excluded">[N] whether a sample is left out of both tracks, or null.</param>
        /// <returns>m/m, or the Ride Number, 0 to 5. When every sample was left out, -1.0, or 0.0
        /// for the Ride Number.</returns>
        public static float TwoTrackRideIndex(
            float[] left, float[] right, float interval, RideIndex index = Vialto.RideIndex.Mri,
            bool movingAverage = true, bool[] excluded = null)
        {
            int size = Size(left, right);
            Native.Check(Native.ride2chan_dlldrv(
                Native.YesOrNo(excluded != null), Native.YesOrNo(movingAverage), index, size, left,
                right, Mask(excluded, size), interval, out float result, out tEvent e), e);
            return result;
        }

        /// <summary>Ride index of two tracks for each segment
        /// (<c>rideseg2chan_dlldrv</c>).</summary>
        /// <param name="left">[N] elevations, m.</param>
        /// <param name="right">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="segmentPoints">[K] as in <see cref="SegmentRideIndices"/>.</param>
        /// <param name="index">As in <see cref="TwoTrackRideIndex"/>.</param>
        /// <param name="movingAverage">As in <see cref="RideIndex"/>.</param>
        public static SegmentIndices TwoTrackSegmentRideIndices(
            float[] left, float[] right, float interval, int[] segmentPoints,
            RideIndex index = Vialto.RideIndex.Mri, bool movingAverage = true)
        {
            var result = Room(segmentPoints);
            Native.Check(Native.rideseg2chan_dlldrv(
                Native.YesOrNo(movingAverage), index, Size(left, right), left, right, interval,
                segmentPoints.Length, segmentPoints, result.Index, result.Length, out tEvent e),
                e);
            return result;
        }

        /// <summary>Ride index of two tracks about each sample
        /// (<c>ridecon2chan_dlldrv</c>).</summary>
        /// <param name="left">[N] elevations, m.</param>
        /// <param name="right">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="baseLength">m; of the moving statistic.</param>
        /// <param name="index">As in <see cref="TwoTrackRideIndex"/>; the Ride Number is that of
        /// the left track alone.</param>
        /// <param name="movingAverage">As in <see cref="RideIndex"/>.</param>
        /// <returns>[N] in the unit of the index.</returns>
        public static float[] TwoTrackContinuousRideIndex(
            float[] left, float[] right, float interval,
            float baseLength = Defaults.LocalBaseLength,
            RideIndex index = Vialto.RideIndex.Mri, bool movingAverage = true)
        {
            var result = new float[Size(left, right)];
            Native.Check(Native.ridecon2chan_dlldrv(
                Native.YesOrNo(movingAverage), index, result.Length, left, right, interval,
                baseLength, result, out tEvent e), e);
            return result;
        }

        /// <summary>WIM error index at each sample: how strongly the roughness around it would
        /// disturb a weigh-in-motion scale placed there (<c>wimindex_dlldrv</c>).</summary>
        /// <param name="profile">[N] elevations, m; at most 50,000.</param>
        /// <param name="interval">m.</param>
        /// <param name="bridgingFilter">Lets a tyre of 0.25 m bridge what is narrower
        /// first.</param>
        /// <param name="shroudingDistance">m; goes to the diagnostic file, without effect.</param>
        /// <returns>[N] m/m.</returns>
        public static float[] WimErrorIndex(float[] profile, float interval,
                                            bool bridgingFilter = true,
                                            float shroudingDistance = 0.0f)
        {
            var result = new float[Size(profile, nameof(profile))];
            Native.Check(Native.wimindex_dlldrv(
                Native.YesOrNo(bridgingFilter), interval, shroudingDistance, result.Length, profile,
                result, out tEvent e), e);
            return result;
        }

        /// <summary>Power spectral density of a stretch of profile (<c>psd_dll</c>).</summary>
        /// <param name="profile">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="kind">Of slope or of elevation.</param>
        /// <param name="pointsPerOctave">Of the grid of frequencies.</param>
        /// <param name="frequencyInterval">Cycles/m; asks for an evenly spaced grid instead, with
        /// this spacing or, if that is wider, the finest one that the stretch allows.</param>
        /// <param name="stretch">The whole profile by default.</param>
        /// <exception cref="ArgumentOutOfRangeException">The stretch ends behind the
        /// profile.</exception>
        public static Spectrum PowerSpectralDensity(
            float[] profile, float interval, Density kind = Density.Slope,
            int pointsPerOctave = Defaults.PointsPerOctave,
            float? frequencyInterval = null, Stretch? stretch = null)
        {
            var used = Within(stretch, Size(profile, nameof(profile)), nameof(stretch));
            var frequency = new float[used.Count];
            var density = new float[used.Count];
            Native.Check(Native.psd_dll(
                used.First, used.Last, kind,
                frequencyInterval.HasValue ? FrequencyGrid.Even : FrequencyGrid.Octave,
                pointsPerOctave, frequencyInterval ?? 0.0f, used.Count, interval, profile,
                frequency, density, out int first, out int last, out tEvent e), e);
            var valid = new Stretch(first, last);
            return new Spectrum {
                Frequency = Cut(frequency, valid), Density = Cut(density, valid)
            };
        }

        /// <summary>Deflection under a rolling straightedge (<c>rse_dlldrv</c>).</summary>
        /// <param name="profile">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="length">m; of the straightedge.</param>
        public static StraightedgeResponse RollingStraightedge(float[] profile, float interval,
                                                               float length = Defaults.Straightedge)
        {
            var deflection = new float[Size(profile, nameof(profile))];
            Native.Check(Native.rse_dlldrv(
                deflection.Length, interval, length, profile, deflection, out float acceleration,
                out int first, out int last, out tEvent e), e);
            return new StraightedgeResponse {
                Deflection = deflection, Valid = new Stretch(first, last),
                RmsVerticalAcceleration = acceleration
            };
        }

        /// <summary>The profile at the sensing wheel less the mean height of the support wheels
        /// (<c>pgfilt_dll</c>).</summary>
        /// <param name="profile">[N] elevations, in any unit.</param>
        /// <param name="interval">m.</param>
        /// <param name="wheelOffsets">m; distance of each pair of wheels ahead of and behind the
        /// sensing wheel. <see cref="Defaults.TwelveWheels"/> by default.</param>
        /// <param name="stretch">The samples to use; by default the whole profile.</param>
        /// <exception cref="ArgumentOutOfRangeException">The stretch ends behind the
        /// profile.</exception>
        public static ProfilographTrace ProfilographTrace(
            float[] profile, float interval, float[] wheelOffsets = null, Stretch? stretch = null)
        {
            int size = Size(profile, nameof(profile));
            var used = Within(stretch, size, nameof(stretch));
            var offsets = wheelOffsets ?? Defaults.TwelveWheels;
            var height = Filled(size, float.NaN);
            Native.Check(Native.pgfilt_dll(
                used.First, used.Last, interval, offsets.Length, size, offsets, profile, height,
                out int first, out int last, out tEvent e), e);
            return new ProfilographTrace { Height = height, Valid = new Stretch(first, last) };
        }

        /// <summary>Profile index and defects of a profilograph trace (<c>pgindex_dll</c>). Heights
        /// are in the unit of the trace; the defaults are millimetres.</summary>
        /// <param name="trace">[N] heights.</param>
        /// <param name="interval">m.</param>
        /// <param name="stretch">The samples to use, such as those that are valid; by default the
        /// whole trace.</param>
        /// <param name="lots">The samples of each lot; by default one lot, the stretch.</param>
        /// <param name="blankingBand">Full width of the band about the trend line of a lot.</param>
        /// <param name="minWidth">m; of a scallop that counts.</param>
        /// <param name="minHeight">Of a scallop that counts.</param>
        /// <param name="rounding">Step that scallop heights are rounded to; 0.0 for none.</param>
        /// <exception cref="ArgumentOutOfRangeException">The stretch ends behind the
        /// trace.</exception>
        public static ProfileIndex ProfileIndex(
            float[] trace, float interval, Stretch? stretch = null, Stretch[] lots = null,
            float blankingBand = Defaults.BlankingBand, float minWidth = Defaults.ScallopWidth,
            float minHeight = Defaults.ScallopHeight, float rounding = Defaults.ScallopRounding)
        {
            int size = Size(trace, nameof(trace));
            var used = Within(stretch, size, nameof(stretch));
            var lotRecords = Array.ConvertAll(
                lots ?? new[] { used }, lot => new tPGLot { iStart = lot.First, iEnd = lot.Last });
            var defectRecords = new tPGDefect[Limits.Defects];
            int bumps = 0;
            var settings = new float[PGSettings.Count];
            settings[PGSettings.BlankingBand] = blankingBand;
            settings[PGSettings.MinScallopWidth] = minWidth;
            settings[PGSettings.MinScallopHeight] = minHeight;
            settings[PGSettings.ScallopRound] = rounding;
            Native.Check(Native.pgindex_dll(
                used.First, used.Last, interval, settings, size, trace, lotRecords.Length,
                lotRecords, out int defects, defectRecords, ref bumps, null, out tEvent e), e);
            Array.Resize(ref defectRecords, defects);
            return new ProfileIndex {
                Lots = Array.ConvertAll(lotRecords, lot => new Lot {
                    Stretch = new Stretch(lot.iStart, lot.iEnd), RawIndex = lot.RawPI,
                    RoundedIndex = lot.RndPI, UpperStart = lot.xBBUpperStart,
                    UpperEnd = lot.xBBUpperEnd, LowerStart = lot.xBBLowerStart,
                    LowerEnd = lot.xBBLowerEnd
                }),
                Defects = Array.ConvertAll(defectRecords, defect => new Defect {
                    Stretch = new Stretch(defect.iStart, defect.iEnd), Kind = defect.Type,
                    Height = defect.MxHts, Begin = defect.BeginX, BeginHeight = defect.BeginY,
                    End = defect.EndX, EndHeight = defect.EndY
                })
            };
        }

        /// <summary>Grinds spots of one profile, in their order
        /// (<c>grindsimu_dlldrv</c>).</summary>
        /// <param name="profile">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="spots">Where, how deep and in which direction.</param>
        /// <param name="grinder">The machine; a usual one by default.</param>
        public static Ground Grind(float[] profile, float interval, GrindSpot[] spots,
                                   Grinder grinder = null)
        {
            var ground = Copy(profile, nameof(profile));
            var flags = new GrindFlag[ground.Length];
            var machine = (grinder ?? new Grinder()).Record();
            Native.Check(Native.grindsimu_dlldrv(
                interval, Size(spots, nameof(spots)), flags.Length, ref machine, Records(spots),
                ground, flags, out tEvent e), e);
            return new Ground { Profile = ground, Flags = flags };
        }

        /// <summary>Grinds the same spots of two tracks (<c>grindsimu_2chan_dlldrv</c>).</summary>
        /// <param name="left">[N] elevations, m.</param>
        /// <param name="right">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="spots">As in <see cref="Grind"/>.</param>
        /// <param name="grinder">As in <see cref="Grind"/>.</param>
        public static GroundTracks GrindTwoTracks(float[] left, float[] right, float interval,
                                                  GrindSpot[] spots, Grinder grinder = null)
        {
            var flags = new GrindFlag[Size(left, right)];
            var ground = new GroundTracks {
                Left = Copy(left, nameof(left)), Right = Copy(right, nameof(right)), Flags = flags
            };
            var machine = (grinder ?? new Grinder()).Record();
            Native.Check(Native.grindsimu_2chan_dlldrv(
                interval, Size(spots, nameof(spots)), flags.Length, ref machine, Records(spots),
                ground.Left, ground.Right, flags, out tEvent e), e);
            return ground;
        }

        /// <summary>What must be ground of one profile (<c>mustgrind_dlldrv</c>).</summary>
        /// <param name="profile">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="settings">With the index <see cref="RideIndex.Iri"/>, the default, RN or
        /// Wim.</param>
        /// <param name="grinder">As in <see cref="Grind"/>.</param>
        /// <returns>[N] a flag for each sample.</returns>
        public static GrindFlag[] MustGrind(float[] profile, float interval,
                                            MustGrind settings = null, Grinder grinder = null)
        {
            var flags = new GrindFlag[Size(profile, nameof(profile))];
            var record = (settings ?? new MustGrind()).Record();
            var machine = (grinder ?? new Grinder()).Record();
            Native.Check(Native.mustgrind_dlldrv(
                flags.Length, interval, ref record, ref machine, profile, flags, out tEvent e),
                e);
            return flags;
        }

        /// <summary>What must be ground of two tracks, of which each is searched for itself
        /// (<c>mustgrind_2chan_dlldrv</c>).</summary>
        /// <param name="left">[N] elevations, m.</param>
        /// <param name="right">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="settings">With the index <see cref="RideIndex.Mri"/>, the default, or Hri,
        /// which run as IRI, RN, or TwoRN with a threshold on the Ride Number's scale of 0 to
        /// 5.</param>
        /// <param name="grinder">As in <see cref="Grind"/>.</param>
        /// <returns>[N] the greater flag of the two tracks.</returns>
        public static GrindFlag[] MustGrindTwoTracks(
            float[] left, float[] right, float interval, MustGrind settings = null,
            Grinder grinder = null)
        {
            var flags = new GrindFlag[Size(left, right)];
            var record = (settings ?? new MustGrind { Index = Vialto.RideIndex.Mri }).Record();
            var machine = (grinder ?? new Grinder()).Record();
            Native.Check(Native.mustgrind_2chan_dlldrv(
                flags.Length, interval, ref record, ref machine, left, right, flags, out tEvent e),
                e);
            return flags;
        }

        /// <summary>Number and step of the offsets of a comparison
        /// (<c>CC_CoeffArray</c>).</summary>
        /// <param name="referenceInterval">m.</param>
        /// <param name="testInterval">m.</param>
        /// <param name="maxOffset">m; to either side.</param>
        /// <param name="upsampling">Brings both profiles to a common finer step; otherwise the step
        /// is the reference profile's interval.</param>
        public static ComparisonGrid ComparisonGrid(
            float referenceInterval, float testInterval, float maxOffset = Defaults.LargestOffset,
            bool upsampling = true)
        {
            var analysis = new tProfAnalysis {
                x_offset_max = maxOffset, if_upsampling = Native.YesOrNo(upsampling)
            };
            tProfinfo[] profiles = { new tProfinfo { x_sampleinterval = referenceInterval },
                                     new tProfinfo { x_sampleinterval = testInterval } };
            Native.Check(Native.CC_CoeffArray(out int offsets, ref analysis, profiles,
                                              out tEvent e), e);
            return new ComparisonGrid {
                Offsets = offsets, Step = analysis.x_normsampleinterval
            };
        }

        /// <summary>Agreement of a test profile with a reference profile, by cross-correlation
        /// (<c>CC_CoeffArray</c> and <c>ccfunc</c>).</summary>
        /// <param name="reference">[NR] elevations, m.</param>
        /// <param name="test">[NT] elevations, m.</param>
        /// <param name="referenceInterval">m.</param>
        /// <param name="testInterval">m; the reference profile's by default.</param>
        /// <param name="maxOffset">m; to either side.</param>
        /// <param name="settings">The filter that both profiles go through first; by default the
        /// quarter car of the IRI.</param>
        /// <param name="referenceSection">The samples that are compared; all by default.</param>
        /// <param name="testSection">Likewise.</param>
        /// <param name="padding">Reflects the profiles about their ends for the filter.</param>
        /// <param name="upsampling">As in <see cref="ComparisonGrid"/>.</param>
        public static Comparison CompareProfiles(
            float[] reference, float[] test, float referenceInterval, float? testInterval = null,
            float maxOffset = Defaults.LargestOffset, Filter settings = null,
            Stretch? referenceSection = null, Stretch? testSection = null, bool padding = true, bool upsampling = true)
        {
            tProfinfo[] profiles = {
                Section(referenceSection, Size(reference, nameof(reference)), referenceInterval,
                        settings),
                Section(testSection, Size(test, nameof(test)), testInterval ?? referenceInterval,
                        settings)
            };
            var grid = ComparisonGrid(referenceInterval, testInterval ?? referenceInterval,
                                      maxOffset, upsampling);
            var analysis = new tProfAnalysis {
                if_outputfilt = Switch.Yes, if_padding = Native.YesOrNo(padding),
                if_upsampling = Native.YesOrNo(upsampling), x_offset_max = maxOffset,
                x_normsampleinterval = grid.Step
            };
            var coefficients = new float[Math.Max(0, grid.Offsets)];
            var offsets = new float[coefficients.Length];
            var referenceFiltered = new float[reference.Length];
            var testFiltered = new float[test.Length];
            Native.Check(Native.ccfunc(
                reference.Length, test.Length, grid.Offsets, reference, test, ref analysis,
                profiles, coefficients, offsets, referenceFiltered, testFiltered, out tEvent e),
                e);
            return new Comparison {
                Best = analysis.iIndexMaxCorr, Offset = analysis.x_opt_offset,
                Coefficient = analysis.x_opt_finalcc,
                RoughnessCoefficient = analysis.x_opt_roughcc,
                ShapeFactor = analysis.x_opt_shapefactor, Offsets = offsets,
                Coefficients = coefficients, ReferenceIri = analysis.x_ref_iri,
                TestIri = analysis.x_test_iri, IriDifference = analysis.x_iri_diff,
                ReferenceFiltered =
                    Cut(referenceFiltered, new Stretch(0, profiles[0].i_filt_leadout)),
                TestFiltered = Cut(testFiltered, new Stretch(0, profiles[1].i_filt_leadout))
            };
        }

        /// <summary>Precision and bias of ten runs of 1057 points (<c>pcbia_dlldrv</c>).</summary>
        /// <param name="runs">[10, 1057] elevations, m.</param>
        /// <param name="reference">[1057] the true profile, m.</param>
        public static Repeatability Repeatability(float[,] runs, float[] reference)
        {
            const int count = Limits.RepeatabilityRuns;
            const int points = Limits.RepeatabilityPoints;
            Size(reference, nameof(reference));
            if (runs == null)
            {
                throw new ArgumentNullException(nameof(runs));
            }
            if (runs.GetLength(0) != count || runs.GetLength(1) != points ||
                reference.Length != points)
            {
                throw new ArgumentException("ten runs of 1057 points are needed", nameof(runs));
            }
            var samples = new float[count * points];
            Buffer.BlockCopy(runs, 0, samples, 0, Buffer.ByteLength(runs));
            Native.Check(Native.pcbia_dlldrv(
                samples, reference, out float precision, out float bias, out int precisionClass,
                out int biasClass, out tEvent e), e);
            return new Repeatability {
                PrecisionMm = precision, BiasMm = bias, PrecisionClass = precisionClass,
                BiasClass = biasClass
            };
        }

        /// <summary>Joints and cracks of a concrete pavement (<c>joint_id_dlldrv</c>). A track
        /// without a detection is a failure, except with <see cref="JointMethod.Step"/>, which then
        /// reports one joint at a location that is not a number.</summary>
        /// <param name="left">[N] elevations, m.</param>
        /// <param name="right">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="spacing">m; nominal spacing of the joints.</param>
        /// <param name="method">How joints are detected.</param>
        public static TrackFeatures FindJoints(
            float[] left, float[] right, float interval, float spacing = Defaults.JointSpacing,
            JointMethod method = JointMethod.AntiSmoothing)
        {
            int size = Size(left, right);
            var settings = new tJointIDCfg {
                i_jntid_method = method, if_skewed = Switch.No, xDomJointSpacing = spacing
            };
            var leftKinds = new Feature[size];
            var rightKinds = new Feature[size];
            var leftLocations = Filled(size, double.NaN);
            var rightLocations = Filled(size, double.NaN);
            Native.Check(Native.joint_id_dlldrv(
                ref settings, interval, size, left, right, leftKinds, rightKinds, leftLocations,
                rightLocations, out tEvent e), e);
            return new TrackFeatures {
                Left = Found(leftLocations, leftKinds), Right = Found(rightLocations, rightKinds)
            };
        }

        /// <summary>Fault at each joint (<c>joint_fault_dlldrv</c>).</summary>
        /// <param name="profileMm">[N] elevations, mm.</param>
        /// <param name="interval">m.</param>
        /// <param name="joints">[J] m from the start of the profile, as <see cref="FindJoints"/>
        /// gives them.</param>
        /// <param name="windowMm">mm; half width about a joint of what belongs to neither
        /// slab.</param>
        /// <returns>[J] mm, positive where the slab behind stands higher; NaN at a joint nearer
        /// than 2.4384 m to either end of the profile.</returns>
        public static float[] JointFaults(float[] profileMm, float interval, double[] joints,
                                          float windowMm = Defaults.JointWindowMm)
        {
            var faults = Filled(Size(joints, nameof(joints)), float.NaN);
            Native.Check(Native.joint_fault_dlldrv(
                Size(profileMm, nameof(profileMm)), joints.Length, interval, windowMm, profileMm,
                joints, faults, out tEvent e), e);
            return faults;
        }

        /// <summary>Distance of each sample from the mean of a window around it
        /// (<c>antismth_dlldrv</c>).</summary>
        /// <param name="profile">[N] elevations, m.</param>
        /// <param name="interval">m.</param>
        /// <param name="baseLength">m; of the window.</param>
        public static AntiSmoothed AntiSmooth(float[] profile, float interval,
                                              float baseLength = Defaults.AntiSmoothingLength)
        {
            var deviation = Copy(profile, nameof(profile));
            Native.Check(Native.antismth_dlldrv(
                interval, baseLength, deviation.Length, deviation, out int first, out int last,
                out tEvent e), e);
            return new AntiSmoothed { Deviation = deviation, Valid = new Stretch(first, last) };
        }

        /// <summary>Percentages of values in classes (<c>histgrm_dlldrv</c>). Boundaries, step and
        /// threshold are in the unit of the values.</summary>
        /// <param name="values">[N] the values.</param>
        /// <param name="classes">How many, K, the open ones below low and above high among
        /// them.</param>
        /// <param name="low">First boundary; a value on one belongs to the class below it.</param>
        /// <param name="high">Last boundary.</param>
        /// <param name="step">Between the inner boundaries; by default it makes the inner classes
        /// equally wide.</param>
        /// <param name="threshold">Of the exceedance; high by default.</param>
        /// <param name="excluded">[N] whether a value is left out, or null.</param>
        public static Histogram Histogram(
            float[] values, int classes, float low, float high, float? step = null,
            float? threshold = null, bool[] excluded = null)
        {
            int size = Size(values, nameof(values));
            var percentages = new float[Math.Max(0, classes)];
            float even = classes > 2 ? (high - low) / (classes - 2) : high - low;
            Native.Check(Native.histgrm_dlldrv(
                Native.YesOrNo(excluded != null), classes, size, low, high, step ?? even,
                threshold ?? high, values, Mask(excluded, size), percentages, out float above,
                out tEvent e), e);
            return new Histogram { Percentages = percentages, AboveThreshold = above };
        }

        static int Size(Array samples, string name)
        {
            if (samples == null)
            {
                throw new ArgumentNullException(name);
            }
            return samples.Length;
        }

        static int Size(float[] left, float[] right)
        {
            if (Size(left, nameof(left)) != Size(right, nameof(right)))
            {
                throw new ArgumentException("the tracks have " + left.Length + " and " +
                                            right.Length + " samples", nameof(right));
            }
            return left.Length;
        }

        static float[] Copy(float[] samples, string name)
        {
            Size(samples, name);
            return (float[])samples.Clone();
        }

        static T[] Filled<T>(int size, T value)
        {
            var array = new T[size];
            for (int i = 0; i < size; ++i)
            {
                array[i] = value;
            }
            return array;
        }

        static T[] Cut<T>(T[] array, Stretch stretch)
        {
            var cut = new T[stretch.Count];
            if (cut.Length > 0)
            {
                Array.Copy(array, stretch.First, cut, 0, cut.Length);
            }
            return cut;
        }

        // The library trusts a stretch to end within the array.
        static Stretch Within(Stretch? stretch, int size, string name)
        {
            var used = stretch ?? new Stretch(0, size - 1);
            if (used.Last >= size)
            {
                throw new ArgumentOutOfRangeException(
                    name, "sample " + used.Last + " of an array of " + size);
            }
            return used;
        }

        static int[] Mask(bool[] excluded, int size)
        {
            if (excluded != null && excluded.Length != size)
            {
                throw new ArgumentException("flags for " + excluded.Length + " of " + size +
                                            " samples", nameof(excluded));
            }
            return excluded == null ? null : Array.ConvertAll(excluded, flag => flag ? 1 : 0);
        }

        static SegmentIndices Room(int[] segmentPoints)
        {
            int size = Size(segmentPoints, nameof(segmentPoints));
            return new SegmentIndices { Index = new float[size], Length = new float[size] };
        }

        static tGrindSpot[] Records(GrindSpot[] spots)
        {
            return Array.ConvertAll(spots, spot => spot.Record());
        }

        static tProfinfo Section(Stretch? section, int size, float interval, Filter settings)
        {
            var used = section ?? new Stretch(0, size - 1);
            return new tProfinfo {
                i_raw_leadin = used.First, i_raw_leadout = used.Last, x_sampleinterval = interval,
                tFilter = (settings ?? new Filter()).Record()
            };
        }

        // The first none among the kinds stands behind the last feature.
        static Features Found(double[] locations, Feature[] kinds)
        {
            int none = Array.IndexOf(kinds, Feature.None);
            var found = new Stretch(0, (none < 0 ? kinds.Length : none) - 1);
            return new Features { Location = Cut(locations, found), Kind = Cut(kinds, found) };
        }
    }

    /// <summary>The functions of the library as they are: their contracts stand in
    /// <c>vialto/vialto.h</c>. A failure is the result 3; the event is written then, and only
    /// then.</summary>
    public static class Native
    {
        const string Library = "vialto";

        // The library reads TMP from the C environment, which .NET's own does not reach outside
        // Windows, where every process has it.
        static Native()
        {
            if (Path.DirectorySeparatorChar == '/' &&
                string.IsNullOrEmpty(Environment.GetEnvironmentVariable("TMP")))
            {
                var directory = Directory.CreateDirectory(
                    Path.Combine(Path.GetTempPath(), "vialto-" + Guid.NewGuid()));
                setenv("TMP", directory.FullName, 1);
                AppDomain.CurrentDomain.ProcessExit += (sender, ending) => directory.Delete(true);
            }
        }

        [DllImport("libc")]
        static extern int setenv(string name, string value, int overwrite);

        internal static Switch YesOrNo(bool wanted)
        {
            return wanted ? Switch.Yes : Switch.No;
        }

        internal static void Check(Outcome result, tEvent failure)
        {
            if (result != Outcome.Success)
            {
                throw new VialtoException(Text(failure.description), Text(failure.routine),
                                          failure.error_code, failure.error_type);
            }
        }

        static string Text(byte[] padded)
        {
            return Encoding.Default.GetString(padded).TrimEnd(' ');
        }

#pragma warning disable 1591 // the contracts stand in the C header

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome ride_dlldrv(
            Switch ifExcludeLeaveout, Switch if250mmFilter, RideIndex iRideIndex,
            int iSizeDataArray, float[] dataarray, int[] exclusion_flags, float xStepSize,
            out float xRideIndex, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome rideseg_dlldrv(
            Switch if250mmFilter, RideIndex iRideIndex, int iSizeDataArray, float[] dataarray,
            float xStepSize, int iNumSegments, int[] iNumSegmentPoints, [In, Out] float[] xOutput,
            [In, Out] float[] xSegLength, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome ridecon_dlldrv(
            Switch if250mmFilter, float xStepSize, float xBaseLength, RideIndex iRideIndexType,
            int iSizeDataArray, float[] dataarray, [In, Out] float[] xOutput, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome ride2chan_dlldrv(
            Switch ifExcludeLeaveout, Switch if250mmFilter, RideIndex iRideIndex,
            int iSizeDataArray, float[] dataarray1, float[] dataarray2, int[] exclusion_flags,
            float xStepSize, out float xRideIndex, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome rideseg2chan_dlldrv(
            Switch if250mmFilter, RideIndex iRideIndex, int iSizeDataArray, float[] dataarray1,
            float[] dataarray2, float xStepSize, int iNumSegments, int[] iNumSegmentPoints,
            [In, Out] float[] xOutput, [In, Out] float[] xSegLength, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome ridecon2chan_dlldrv(
            Switch if250mmFilter, RideIndex iRideIndex, int iSizeDataArray, float[] dataarray1,
            float[] dataarray2, float xStepSize, float xBaseLength, [In, Out] float[] xOutput,
            out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome wimindex_dlldrv(
            Switch iBridgingFilter, float xStepSize, float xShroudingDistance, int iSizeDataArray,
            float[] dataarray, [In, Out] float[] xOutput, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome psd_dll(
            int iBeginElemIdx, int iEndElemIdx, Density iPSDType, FrequencyGrid iOctaveBands,
            int iPointsPerOctave, float xFreqInterval, int iSizeDataArray, float xStepSize,
            float[] xProfile, [In, Out] float[] xFreq, [In, Out] float[] xPSD, out int iFreqBegin,
            out int iFreqEnd, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome rse_dlldrv(
            int iSizeDataArray, float xStepSize, float xStrLeng, float[] xProfile,
            [In, Out] float[] xDeflection, out float xRMSvertacc, out int iBeginelemIdx,
            out int iEndelemIdx, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome pgfilt_dll(
            int iStartIndex, int iEndIndex, float xStepSize, int iNumWheelOffsets, int iNumPoints,
            float[] xWheelOffsets, float[] xProfile, [In, Out] float[] xPGTrace,
            out int BeginElemIdx, out int EndElemIdx, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome pgindex_dll(
            int iStartIndex, int iEndIndex, float xStepSize, float[] xPGSettings, int iNumPoints,
            float[] xPGTrace, int iNumLots, [In, Out] tPGLot[] tPGLots, out int iNumDefects,
            [In, Out] tPGDefect[] tPGDefects, [In] ref int iNumBumps,
            [In, Out] tPGDefect[] tPGBumps, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome grindsimu_dlldrv(
            float xStepSize, int iNumGrindSpots, int nsamp, [In] ref tGrinderSetup setup,
            tGrindSpot[] tGrindSpots, [In, Out] float[] xProfile, [In, Out] GrindFlag[] iGrindFlags,
            out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome grindsimu_2chan_dlldrv(
            float xStepSize, int iNumGrindSpots, int nsamp, [In] ref tGrinderSetup setup,
            tGrindSpot[] tGrindSpots, [In, Out] float[] xProfile1, [In, Out] float[] xProfile2,
            [In, Out] GrindFlag[] iGrindFlags, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome mustgrind_dlldrv(
            int nsamp, float xStepSize, ref tMustGrindCfg cfg, [In] ref tGrinderSetup setup,
            float[] xProfile, [In, Out] GrindFlag[] iGrindFlags, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome mustgrind_2chan_dlldrv(
            int nsamp, float xStepSize, ref tMustGrindCfg cfg, [In] ref tGrinderSetup setup,
            float[] xProfile1, float[] xProfile2, [In, Out] GrindFlag[] iGrindFlags,
            out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome CC_CoeffArray(
            out int iCroxCorrPoints, ref tProfAnalysis analysis, tProfinfo[] ptrProfinfo,
            out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome ccfunc(
            int iSizeDataArrayRef, int iSizeDataArrayTest, int iCroxCorrPoints,
            float[] xDataArrayRef, float[] xDataArrayTest, ref tProfAnalysis analysis,
            [In, Out] tProfinfo[] ptrProfinfo, [In, Out] float[] xFinalCC,
            [In, Out] float[] xOffsetArray, [In, Out] float[] xDataArrayRefFilt,
            [In, Out] float[] xDataArrayTestFilt, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome pcbia_dlldrv(
            float[] xRunData, float[] xRefProfile, out float xPrecision, out float xBias,
            out int iPrecisionClass, out int iBiasClass, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome joint_id_dlldrv(
            [In] ref tJointIDCfg settings, float xStepSize, int iSizeDataArray,
            float[] xLeftProfile, float[] xRightProfile, [In, Out] Feature[] iLeftTypes,
            [In, Out] Feature[] iRightTypes, [In, Out] double[] xLeftLocations,
            [In, Out] double[] xRightLocations, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome joint_fault_dlldrv(
            int iSizeDataArray, int iNumJoints, float xStepSize, float xJointWindow,
            float[] xProfile, double[] xJointLoc, [In, Out] float[] xFault, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome antismth_dlldrv(
            float xStepSize, float xBaseLength, int iSizeDataArray, [In, Out] float[] xProfile,
            out int iBeginElemIdx, out int iEndElemIdx, out tEvent @event);

        [DllImport(Library, ExactSpelling = true)]
        public static extern Outcome histgrm_dlldrv(
            Switch ifExcludeLeaveout, int iNumClasses, int iSizeDataArray, float xLow, float xHigh,
            float xStep, float xThreshold, float[] xDataArray, int[] iMaskArray,
            [In, Out] float[] xHistogram, out float xAboveThreshold, out tEvent @event);
    }

    // The records of the C interface, field for field.

    [StructLayout(LayoutKind.Sequential)]
    public struct tEvent
    {
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = Limits.TextLength)]
        public byte[] description;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = Limits.TextLength)]
        public byte[] routine;
        public ErrorCode error_code;
        public ErrorType error_type;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct tFiltCon
    {
        public FilterKind iMainFilterType;
        public FilterBand iSubFilterType;
        public FilterOutput iOutType;
        public Switch if250mmFilter;
        public float xBW4IniBaseLength, xLongWavelength, xShortWavelength, xSimuVelocity;
        public float xPowerWeighting;
        public int iBeginElemIdx, iEndElemIdx;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct tPGLot
    {
        public int iStart, iEnd;
        public float xBBUpperStart, xBBUpperEnd, xBBLowerStart, xBBLowerEnd, RawPI, RndPI;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct tPGDefect
    {
        public int iStart, iEnd;
        public float BeginX, BeginY, EndX, EndY, MxHts;
        public DefectKind Type;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct tGrinderSetup
    {
        public float WheelBase, HeadPosition, TandemSpread, ShortWavelength, MaxGrindingDepth_mm;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct tGrindSpot
    {
        public int iNumPasses;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = Limits.Passes)]
        public Direction[] iDirection;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = Limits.Passes)]
        public float[] xDepth_mm;
        public int iStart, iEnd;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct tMustGrindCfg
    {
        public RideIndex iRideIndexType;
        public Switch if250mmFilter;
        public float xRideThreshold, xSlideBaseLength;
        [MarshalAs(UnmanagedType.ByValArray, SizeConst = 3)]
        public Switch[] ib_grindopt;
        public float x_grinddepth_min, x_grindlength_min, x_grindgap_min;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct tProfAnalysis
    {
        public Switch if_outputfilt, if_padding, if_upsampling;
        public int iIndexMaxCorr;
        public float x_normsampleinterval, x_offset_max, x_opt_finalcc, x_opt_shapefactor;
        public float x_opt_roughcc, x_opt_offset, x_ref_iri, x_test_iri, x_iri_diff;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct tProfinfo
    {
        public int i_raw_leadin, i_raw_leadout, i_filt_leadin, i_filt_leadout;
        public float x_sampleinterval;
        public tFiltCon tFilter;
    }

    [StructLayout(LayoutKind.Sequential)]
    public struct tJointIDCfg
    {
        public JointMethod i_jntid_method;
        public Switch if_skewed;
        public float xDomJointSpacing;
    }
#pragma warning restore 1591
}
