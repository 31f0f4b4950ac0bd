// Claims about roads, with expectations of closed form or worked by hand.
using System;
using System.Linq;
using NUnit.Framework;
using static Vialto.Tests.Roads;

namespace Vialto.Tests
{
    [TestFixture]
    public class RideTests
    {
        [Test]
        public void FlatRoadHasNoRoughness()
        {
            Assert.That(Analysis.RideIndex(Flat, Interval), Is.EqualTo(0.0f));
            Assert.That(Analysis.ContinuousRideIndex(Flat, Interval), Is.EqualTo(Flat));
            Assert.That(Analysis.WimErrorIndex(Flat, Interval), Is.EqualTo(Flat));
        }

        [Test]
        public void RoadTwiceAsHighIsTwiceAsRough()
        {
            float[] twice = Wave.Select(height => 2.0f * height).ToArray();
            Assert.That(Analysis.RideIndex(twice, Interval),
                        Is.EqualTo(2.0f * Analysis.RideIndex(Wave, Interval)).And.GreaterThan(0));
            Assert.That(Analysis.WimErrorIndex(twice, Interval)[1200], Is.EqualTo(
                2.0f * Analysis.WimErrorIndex(Wave, Interval)[1200]).And.GreaterThan(0));
        }

        [Test]
        public void MeanRoughnessIsTheMeanOfTheTracks()
        {
            float[] left = Rough(1), right = Rough(2);
            float mean = (Analysis.RideIndex(left, Interval) +
                          Analysis.RideIndex(right, Interval)) / 2.0f;
            Assert.That(Analysis.TwoTrackRideIndex(left, right, Interval),
                        Is.EqualTo(mean).Within(1).Ulps);
            mean = (Analysis.ContinuousRideIndex(left, Interval)[1000] +
                    Analysis.ContinuousRideIndex(right, Interval)[1000]) / 2.0f;
            Assert.That(Analysis.TwoTrackContinuousRideIndex(left, right, Interval)[1000],
                        Is.EqualTo(mean).Within(1).Ulps);
        }

        [Test]
        public void RideNumberOfOneTrackTwice()
        {
            float[] road = Rough(3);
            float rn = Analysis.RideIndex(road, Interval, RideIndex.RN);
            Assert.That(Analysis.TwoTrackRideIndex(road, road, Interval, RideIndex.RideNumber),
                        Is.EqualTo(5.0 * Math.Exp(-160.0 * rn)).Within(1e-4));
        }

        [Test]
        public void ExcludedSamplesDoNotCount()
        {
            float[] rough = Rough(4);
            float[] road = Road(x => x < 150.0 ? 0.0 : rough[(int)(x / Interval)]);
            bool[] excluded = Road(x => x).Select(x => x >= 149.0f).ToArray();
            bool[] all = new bool[Samples].Select(none => true).ToArray();
            Assert.That(Analysis.RideIndex(road, Interval, excluded: excluded), Is.EqualTo(0.0f));
            Assert.That(Analysis.RideIndex(road, Interval, excluded: all), Is.EqualTo(-1.0f));
            Assert.That(Analysis.TwoTrackRideIndex(road, road, Interval, excluded: excluded),
                        Is.EqualTo(0.0f));
        }

        [Test]
        public void SegmentsShareTheirBoundarySampleAndOneIsTheRoad()
        {
            float[] left = Rough(5), right = Rough(6);
            Assert.That(Analysis.SegmentRideIndices(left, Interval, new[] { Samples }).Index,
                        Is.EqualTo(new[] { Analysis.RideIndex(left, Interval) }));
            Assert.That(
                Analysis.TwoTrackSegmentRideIndices(left, right, Interval, new[] { 0 }).Index,
                Is.EqualTo(new[] { Analysis.TwoTrackRideIndex(left, right, Interval) }));
            Assert.That(
                Analysis.SegmentRideIndices(left, Interval, new[] { 801, 801, 0 }).Length.Take(2),
                Is.EqualTo(new[] { 100.0f, 100.0f }));
        }
    }

    [TestFixture]
    public class SpectrumTests
    {
        [TestCase(Density.Elevation)]
        [TestCase(Density.Slope)]
        public void DensityOfAWaveAddsUpToHalfItsSquareAmplitude(Density kind)
        {
            // 20 waves on 256 m, bands of four bins of 1/256 cycles/m.
            const float frequency = 20.0f / 256.0f, band = 4.0f / 256.0f;
            float[] wave = Road(x => 0.005 * Math.Sin(2.0 * Math.PI * frequency * x));
            double amplitude = kind == Density.Elevation
                ? 0.005 : 0.005 * 2.0 * Math.Sin(Math.PI * frequency * Interval) / Interval;
            var spectrum = Analysis.PowerSpectralDensity(
                wave, Interval, kind, frequencyInterval: band, stretch: new Stretch(0, 2048));
            Assert.That(spectrum.Density.Sum() * band / (amplitude * amplitude / 2.0),
                        Is.EqualTo(1.0).Within(1e-4));
            int peak = Array.IndexOf(spectrum.Density, spectrum.Density.Max());
            Assert.That(spectrum.Frequency[peak], Is.EqualTo(frequency));
        }

        [Test]
        public void StraightedgeOnAParabola()
        {
            const double curvature = 0.0002; // 1/m
            var result = Analysis.RollingStraightedge(
                Road(x => curvature / 2.0 * (x - 150.0) * (x - 150.0)), Interval, 3.0f);
            Assert.That(result.Valid, Is.EqualTo(new Stretch(12, Samples - 13)));
            Assert.That(result.Deflection[1200], Is.EqualTo(-curvature / 2.0 * 2.25).Within(1e-8));
            Assert.That(result.RmsVerticalAcceleration, Is.EqualTo(curvature).Within(1).Percent);
            Assert.That(Analysis.RollingStraightedge(new float[10], Interval).Valid.Count,
                        Is.EqualTo(0));
        }

        [Test]
        public void SpikeStandsOffTheMeanThatItRaises()
        {
            float[] spike = Road(x => x == 100.0 * Interval ? 0.006 : 0.0);
            var result = Analysis.AntiSmooth(spike, Interval, 0.5f);
            // A window of 5 samples, whose third one is in its middle.
            Assert.That(result.Deviation[100 - 3], Is.EqualTo(0.006 * 4.0 / 5.0).Within(1e-8));
            Assert.That(result.Valid, Is.EqualTo(new Stretch(3, Samples - 6)));
            Assert.That(spike[100], Is.EqualTo(0.006f), "the host's own stays as it is");
        }

        [Test]
        public void HistogramByHand()
        {
            float[] values = { 0.5f, 1.0f, 1.5f, 2.5f, 9.0f };
            var result = Analysis.Histogram(values, 4, 1.0f, 3.0f, threshold: 1.5f);
            Assert.That(result.Percentages, Is.EqualTo(new[] { 40.0f, 20.0f, 20.0f, 20.0f }));
            Assert.That(result.AboveThreshold, Is.EqualTo(40.0f));
            var excluded = new[] { false, true, true, true, false };
            Assert.That(Analysis.Histogram(values, 2, 1.0f, 1.0f, excluded: excluded).Percentages,
                        Is.EqualTo(new[] { 50.0f, 50.0f }));
        }
    }

    [TestFixture]
    public class ProfilographTests
    {
        [Test]
        public void TraceOfAParabolaIsLevel()
        {
            var trace = Analysis.ProfilographTrace(
                Road(x => 0.1 * (x - 150.0) * (x - 150.0)), Interval, new[] { 1.0f, 2.0f, 4.0f });
            Assert.That(trace.Height[1200], Is.EqualTo(-0.1 * 21.0 / 3.0).Within(1e-5));
            Assert.That(trace.Height.Select(float.IsNaN).Count(isNan => !isNan),
                        Is.EqualTo(trace.Valid.Count));
            Assert.That(trace.Height[trace.Valid.First], Is.Not.NaN);
        }

        [Test]
        public void IndexOfAWaveCountsEveryCrestAndTrough()
        {
            float[] trace = Road(x => 5.0 * Math.Sin(0.2 * Math.PI * x)); // mm; 30 waves
            const double beyondTheBand = 5.0 - 4.0 / 2.0;
            var lots = new[] { new Stretch(0, 1199), new Stretch(1200, Samples - 1) };
            var result = Analysis.ProfileIndex(trace, Interval, lots: lots, blankingBand: 4.0f,
                                               rounding: 0.0f);
            Assert.That(result.Lots.Select(lot => lot.Stretch), Is.EqualTo(lots));
            foreach (var lot in result.Lots)
            {
                Assert.That(lot.RawIndex,
                            Is.EqualTo(30.0 * beyondTheBand / 150.0).Within(3.0).Percent);
                Assert.That(lot.UpperStart - lot.LowerStart, Is.EqualTo(4.0f).Within(1e-5f));
            }
            Assert.That(result.Defects.Length, Is.EqualTo(60));
            Assert.That(result.Defects.Take(2).Select(defect => defect.Kind),
                        Is.EqualTo(new[] { DefectKind.Above, DefectKind.Below }));
            var crest = result.Defects[10]; // the one at 52.5 m
            Assert.That(crest.Height, Is.EqualTo(beyondTheBand).Within(0.1));
            Assert.That((crest.Begin + crest.End) / 2.0, Is.EqualTo(52.5).Within(0.1));
            Assert.That(crest.Stretch.First * Interval, Is.EqualTo(crest.Begin).Within(Interval));
        }

        [Test]
        public void RunIsTheTraceInMillimetresAndItsLots()
        {
            float[] road = Rough(9).Select(height => 10.0f * height).ToArray();
            float[] heights = road.Select(height => 1000.0f * height).ToArray();
            var trace = Analysis.ProfilographTrace(heights, Interval);
            var run = Analysis.RunProfilograph(road, Interval, lotLength: 100.0f);
            Assert.That(run.Trace.Height, Is.EqualTo(trace.Height));
            // The outermost wheels stand 31 samples from the middle; 100 m are 800.
            var lots = new[] { new Stretch(31, 831), new Stretch(831, 1631),
                               new Stretch(1631, Samples - 32) };
            Assert.That(run.Index.Lots.Select(lot => lot.Stretch), Is.EqualTo(lots));
            var index = Analysis.ProfileIndex(trace.Height, Interval, trace.Valid, lots);
            Assert.That(index.Defects, Is.Not.Empty);
            Assert.That(run.Index.Defects.Select(defect => defect.Stretch),
                        Is.EqualTo(index.Defects.Select(defect => defect.Stretch)));
        }

        [Test]
        public void StretchesAreAsLongAsTheyCanBe()
        {
            Assert.That(Stretch.Where(new[] { 3, 0, 0, 4, 5 }, one => one > 2),
                        Is.EqualTo(new[] { new Stretch(0, 0), new Stretch(3, 4) }));
            Assert.That(Stretch.Where(new int[0], one => true), Is.Empty);
        }
    }

    [TestFixture]
    public class GrindingTests
    {
        // The wheels ride on the bare profile, far from the bumps.
        static readonly Grinder Far =
            new Grinder { WheelBase = 10.0f, WheelLength = 0.0f, MaxDepthMm = 1.5f };

        static float[] Bumps()
        {
            return Road(x => x == 100.0 || x == 200.0 ? 0.002 : 0.0);
        }

        [Test]
        public void EveryPassOfEverySpotCutsToItsLevel()
        {
            float[] bumps = Bumps();
            var spots = new[] {
                new GrindSpot(790, 810, new Pass(1.0f), new Pass(0.5f, Direction.Lower)),
                new GrindSpot(1590, 1610)
            };
            var ground = Analysis.Grind(bumps, Interval, spots, Far);
            Assert.That(ground.Profile[800], Is.EqualTo(0.0005f));
            Assert.That(ground.Profile[1600], Is.EqualTo(0.0f));
            Assert.That(ground.Flags[800], Is.EqualTo(GrindFlag.Within));
            Assert.That(ground.Flags[1600], Is.EqualTo(GrindFlag.Deeper));
            Assert.That(ground.Flags[1200], Is.EqualTo(GrindFlag.None));
            Assert.That(bumps, Is.EqualTo(Bumps()), "the host's own stays as it is");

            var both = Analysis.GrindTwoTracks(Flat, bumps, Interval, spots, Far);
            Assert.That(both.Left, Is.EqualTo(Flat));
            Assert.That(both.Right, Is.EqualTo(ground.Profile));
            Assert.That(both.Flags, Is.EqualTo(ground.Flags));
        }

        [Test]
        public void MoreThanTenPassesAreRefused()
        {
            var spots = new[] { new GrindSpot(0, 9, new Pass[11]) };
            Assert.That(() => Analysis.Grind(Flat, Interval, spots),
                        Throws.TypeOf<VialtoException>().With.Property("Description")
                            .EqualTo("tGrindSpots holds a spot with more than ten passes"));
        }

        [Test]
        public void OnlyTheRoughEndMustBeGround()
        {
            float[] rough = Rough(7);
            float[] road = Road(x => x < 150.0 ? 0.0 : rough[(int)(x / Interval)]);
            var flags = Analysis.MustGrind(road, Interval);
            Assert.That(flags.Take(1100), Is.All.EqualTo(GrindFlag.None));
            Assert.That(flags.Skip(1200), Has.Some.EqualTo(GrindFlag.Within));
            Assert.That(Analysis.MustGrindTwoTracks(Flat, road, Interval), Is.EqualTo(flags));

            var settings = new MustGrind { TryEach = false, MinLength = 1000.0f };
            Assert.That(Analysis.MustGrind(road, Interval, settings),
                        Is.All.EqualTo(GrindFlag.None), "every spot is shorter");
            Assert.That(Analysis.MustGrindTwoTracks(Flat, road, Interval, settings),
                        Is.All.EqualTo(GrindFlag.None));
        }
    }

    [TestFixture]
    public class ComparisonTests
    {
        [Test]
        public void LateStartIsFound()
        {
            float[] road = Rough(8);
            var result = Analysis.CompareProfiles(
                road, road.Skip(8).ToArray(), Interval, maxOffset: 2.0f,
                settings: new Filter { Kind = FilterKind.None, Output = FilterOutput.Elevation },
                testSection: new Stretch(0, 1999));
            Assert.That(result.Offset, Is.EqualTo(8 * Interval));
            Assert.That(result.Offsets[result.Best], Is.EqualTo(8 * Interval));
            Assert.That(result.Coefficient, Is.EqualTo(100.0f).Within(1e-3f));
            Assert.That(result.Coefficients.Length, Is.EqualTo(33));
            Assert.That(result.TestFiltered.Length, Is.EqualTo(2000));
            Assert.That(result.ReferenceIri, Is.GreaterThan(0.0f));
        }

        [Test]
        public void GridOfOffsets()
        {
            var grid = Analysis.ComparisonGrid(0.025f, 0.05f, 1.0f);
            Assert.That(grid.Offsets, Is.EqualTo(81));
            Assert.That(grid.Step, Is.EqualTo(0.025f).Within(1e-7f));
        }

        [Test]
        public void InstrumentThatIsOffBy2Mm()
        {
            var runs = new float[Limits.RepeatabilityRuns, Limits.RepeatabilityPoints];
            var truth = Enumerable.Repeat(-0.002f, Limits.RepeatabilityPoints).ToArray();
            var result = Analysis.Repeatability(runs, truth);
            Assert.That(result.BiasMm, Is.EqualTo(2.0f).Within(1e-4f));
            Assert.That(result.PrecisionMm, Is.EqualTo(0.0f));
            Assert.That(new[] { result.PrecisionClass, result.BiasClass },
                        Is.EqualTo(new[] { 1, 2 }));
        }
    }

    [TestFixture]
    public class JointsTests
    {
        [Test]
        public void StepsBetweenSlabsAreJoints()
        {
            var tracks = Analysis.FindJoints(Slabs, Slabs, Interval, SlabLength, JointMethod.Step);
            foreach (var track in new[] { tracks.Left, tracks.Right })
            {
                Assert.That(track.Kind, Is.EqualTo(Enumerable.Repeat(Feature.Joint, 59)));
                Assert.That(track.Location, Is.EqualTo(
                    Enumerable.Range(1, 59).Select(k => k * SlabLength)).Within(Interval));
            }
        }

        [Test]
        public void FaultsAreTheHeightsOfTheSteps()
        {
            float[] slabs = Slabs.Select(height => 1000.0f * height).ToArray();
            double[] joints = { 1.0, 5.0, 10.0, 15.0 };
            var faults = Analysis.JointFaults(slabs, Interval, joints, 200.0f);
            Assert.That(faults[0], Is.NaN, "too near the start");
            Assert.That(faults.Skip(1), Is.EqualTo(new[] { -4.0f, 4.0f, -4.0f }).Within(1e-4f));
        }
    }

    [TestFixture]
    public class ThreadTests
    {
        static string Answer(int request)
        {
            float[] road = Rough(request % 16);
            switch (request % 3)
            {
                case 0: return Analysis.RideIndex(road, Interval).ToString("R");
                case 1: return Analysis.WimErrorIndex(road, Interval).Sum().ToString("R");
                default:
                    return Assert.Throws<VialtoException>(
                        () => Analysis.ContinuousRideIndex(road, Interval, 1e6f)).Message;
            }
        }

        [Test]
        public void EveryThreadGetsTheNumbersAndTheFailuresOfOneAlone()
        {
            var requests = Enumerable.Range(0, 480);
            Assert.That(requests.AsParallel().AsOrdered().WithDegreeOfParallelism(8).Select(Answer),
                        Is.EqualTo(requests.Select(Answer)));
        }
    }

    [TestFixture]
    public class FailureTests
    {
        [Test]
        public void LibrarySpeaksForItself()
        {
            var failure = Assert.Throws<VialtoException>(
                () => Analysis.RideIndex(Wave, Interval, RideIndex.TwoRN));
            Assert.That(failure.Description, Is.EqualTo("two RN is no longer supported"));
            Assert.That(failure.Routine, Is.EqualTo("ride_dlldrv"));
            Assert.That(failure.ErrorCode, Is.EqualTo(ErrorCode.Analysis));
            Assert.That(failure.ErrorType, Is.EqualTo(ErrorType.SomeFailure));
            Assert.That(failure.Message, Is.EqualTo(
                "two RN is no longer supported (ride_dlldrv, code 101)"));
        }

        static readonly float[] Spoilt = Road(x => x == 150.0 ? double.NaN : 0.0);

        public static readonly TestDelegate[] Misfits = {
            () => Analysis.RideIndex(null, Interval),
            () => Analysis.RideIndex(Wave, Interval, excluded: new bool[1]),
            () => Analysis.TwoTrackRideIndex(Wave, new float[1], Interval),
            () => Analysis.SegmentRideIndices(Wave, Interval, null),
            () => Analysis.ProfilographTrace(Wave, Interval, null, new Stretch(0, Samples)),
            () => Analysis.RideIndex(Wave, 125.0f), // mm
            () => Analysis.WimErrorIndex(Spoilt, Interval, false),
            () => Analysis.TwoTrackRideIndex(Wave, Spoilt, Interval),
            () => Analysis.ProfileIndex(
                Analysis.ProfilographTrace(Wave, Interval).Height, Interval),
            () => Analysis.ProfileIndex(Wave, Interval, lotLength: 0.0f),
            () => Analysis.ProfileIndex(Wave, Interval, lots: new Stretch[1], lotLength: 100.0f),
            () => Analysis.Histogram(new[] { float.PositiveInfinity }, 2, 0.0f, 0.0f),
            () => Analysis.CompareProfiles(Wave, Wave, Interval, maxOffset: 1e9f),
            () => Analysis.Grind(Wave, Interval, null),
            () => Analysis.Grind(Wave, Interval, new GrindSpot[1]),
            () => Analysis.Repeatability(new float[9, 1057], new float[1057])
        };

        [Test, TestCaseSource("Misfits")]
        public void WhatMakesNumbersThatLookRightIsRefused(TestDelegate analysis)
        {
            Assert.That(analysis, Throws.InstanceOf<ArgumentException>());
        }
    }
}
