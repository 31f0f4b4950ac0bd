using System;
using System.Globalization;
using System.IO;
using System.Linq;
using Vialto;

static class FirstNumber
{
    static void Main()
    {
        const float interval = 0.025f; // m
        float[] left = File.ReadLines("sample_road.csv").Skip(1)
            .Select(line => float.Parse(line.Split(',')[1], CultureInfo.InvariantCulture))
            .ToArray();
        try
        {
            Console.WriteLine($"IRI {1000.0f * Analysis.RideIndex(left, interval):F2} m/km");
        }
        catch (VialtoException problem)
        {
            Console.WriteLine(problem.Message);
        }
    }
}
