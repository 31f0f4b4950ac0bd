// Summarises a road: roughness, profile index, spectrum and straightedge.
//
//   RoadSummary PROFILE.csv
//
// The file has a header line and two or three columns: distance, and the elevations of one or two
// wheel tracks, all in metres.
using System;
using System.Globalization;
using System.IO;
using System.Linq;
using Vialto;

static class RoadSummary
{
    const double IntervalTolerance = 0.01; // of the interval

    static int Main(string[] arguments)
    {
        CultureInfo.CurrentCulture = CultureInfo.InvariantCulture;
        if (arguments.Length != 1)
        {
            Console.Error.WriteLine("usage: RoadSummary PROFILE.csv");
            return 2;
        }
        try
        {
            float[][] tracks = ReadRoad(arguments[0], out float interval);
            string[] names = tracks.Length == 1 ? new[] { "profile" } : new[] { "left", "right" };
            for (int k = 0; k < tracks.Length; ++k)
            {
                Console.WriteLine(names[k]);
                SummariseTrack(tracks[k], interval);
            }
            if (tracks.Length == 2)
            {
                Console.WriteLine("both tracks");
                SummariseBoth(tracks[0], tracks[1], interval);
            }
            return 0;
        }
        catch (Exception problem) when (problem is IOException || problem is FormatException ||
                                        problem is VialtoException)
        {
            Console.Error.WriteLine("RoadSummary: " + problem.Message);
            return 1;
        }
    }

    static float[][] ReadRoad(string path, out float interval)
    {
        double[][] rows = File.ReadLines(path).Skip(1).Where(line => line.Trim() != "")
            .Select(line => line.Split(',').Select(double.Parse).ToArray()).ToArray();
        int columns = rows.Length < 2 ? 0 : rows[0].Length;
        if (columns < 2 || columns > 3 || rows.Any(row => row.Length != columns))
        {
            throw new FormatException(
                path + ": expected rows of a distance and one or two elevations");
        }
        double step = (rows.Last()[0] - rows[0][0]) / (rows.Length - 1);
        if (rows.Zip(rows.Skip(1), (row, next) => next[0] - row[0])
                .Any(one => !(Math.Abs(one - step) <= IntervalTolerance * step)))
        {
            throw new FormatException(path + ": the sample interval is not constant");
        }
        interval = (float)step;
        return Enumerable.Range(1, columns - 1)
            .Select(column => rows.Select(row => (float)row[column]).ToArray()).ToArray();
    }

    static void SummariseTrack(float[] profile, float interval)
    {
        bool smoothed = interval < Defaults.LongestSmoothedInterval;
        float iri = Analysis.RideIndex(profile, interval, RideIndex.Iri, smoothed);
        float rn = Analysis.RideIndex(profile, interval, RideIndex.RN, smoothed);
        var index = Analysis.RunProfilograph(profile, interval).Index;
        var spectrum = Analysis.PowerSpectralDensity(profile, interval);
        int peak = Array.IndexOf(spectrum.Density, spectrum.Density.Max());
        var straightedge = Analysis.RollingStraightedge(profile, interval);
        float deepest = 1000.0f * straightedge.Deflection.Max(deflection => Math.Abs(deflection));
        Console.WriteLine($"  IRI                {1000.0f * iri,8:F2} m/km");
        Console.WriteLine($"  Ride Number        {5.0 * Math.Exp(-160.0 * rn),8:F2}");
        Console.WriteLine($"  profile index      {1000.0f * index.Lots[0].RoundedIndex,8:F1} " +
                          $"mm/km, {index.Defects.Length} defects");
        Console.WriteLine($"  slope PSD peak     {spectrum.Density[peak],8:0.00e+00} m at " +
                          $"{1.0f / spectrum.Frequency[peak]:F2} m");
        Console.WriteLine($"  3 m straightedge   {deepest,8:F2} mm at most");
    }

    static void SummariseBoth(float[] left, float[] right, float interval)
    {
        bool smoothed = interval < Defaults.LongestSmoothedInterval;
        float mri = Analysis.TwoTrackRideIndex(left, right, interval, RideIndex.Mri, smoothed);
        float number =
            Analysis.TwoTrackRideIndex(left, right, interval, RideIndex.RideNumber, smoothed);
        Console.WriteLine($"  MRI                {1000.0f * mri,8:F2} m/km");
        Console.WriteLine($"  Ride Number        {number,8:F2}");
    }
}
