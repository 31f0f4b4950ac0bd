using System;
using System.Globalization;
using System.IO;
using System.Linq;
using System.Threading.Tasks;
using Vialto;

static class TracksAtOnce
{
    const float interval = 0.025f; // m

    static int Main()
    {
        try
        {
            Show("sample_road.csv").GetAwaiter().GetResult();
            return 0;
        }
        catch (Exception problem) when (problem is IOException || problem is FormatException ||
                                        problem is ArgumentException || problem is VialtoException)
        {
            Console.Error.WriteLine(problem.Message);
            return 1;
        }
    }

    // In a program with windows, what a button does: behind the await it is in the window's thread.
    static async Task Show(string path)
    {
        string[] rows = File.ReadLines(path).Skip(1).ToArray();
        var left = Task.Run(() => Report("left", Column(rows, 1)));
        var right = Task.Run(() => Report("right", Column(rows, 2)));
        Console.Write(string.Concat(await Task.WhenAll(left, right)));
    }

    // The file has decimal points, whatever the user's Windows writes.
    static float[] Column(string[] rows, int column)
    {
        return rows.Select(row => float.Parse(row.Split(',')[column], CultureInfo.InvariantCulture))
            .ToArray();
    }

    static string Report(string name, float[] profile)
    {
        float iri = Analysis.RideIndex(profile, interval);
        var index = Analysis.RunProfilograph(profile, interval).Index;
        var settings = new MustGrind { MinLength = 3.0f, MinGap = 1.0f }; // m
        var spots = Stretch.Where(Analysis.MustGrind(profile, interval, settings),
                                  flag => flag != GrindFlag.None);
        var report = new StringWriter();
        report.WriteLine($"{name}: IRI {1000.0f * iri:F2} m/km, profile index " +
                         $"{1000.0f * index.Lots[0].RoundedIndex:F0} mm/km");
        report.WriteLine($"  the highest of {index.Defects.Length} defects:");
        foreach (var defect in index.Defects.OrderByDescending(one => one.Height).Take(2))
        {
            report.WriteLine($"    {defect.Kind} by {defect.Height:F2} mm, " +
                             $"{defect.Begin:F2} m to {defect.End:F2} m");
        }
        report.WriteLine("  to grind:");
        foreach (var spot in spots)
        {
            report.WriteLine($"    {spot.First * interval:F2} m to {spot.Last * interval:F2} m");
        }
        return report.ToString();
    }
}
