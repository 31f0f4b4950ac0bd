using System;
using System.Globalization;
using System.IO;
using System.Linq;
using Vialto;

static class Settings
{
    static void Main()
    {
        const float interval = 0.025f; // m
        float[] left = File.ReadLines("sample_road.csv").Skip(1)
            .Select(line => float.Parse(line.Split(',')[1], CultureInfo.InvariantCulture))
            .ToArray();
        float[] moving = Analysis.ContinuousRideIndex(
            left, interval, Defaults.LocalBaseLength,
            movingAverage: interval < Defaults.LongestSmoothedInterval);
        int over = moving.Count(iri => iri > Defaults.LocalRoughness / 1000.0f);
        Console.WriteLine($"{over * interval:F1} m of the left track above " +
                          $"{Defaults.LocalRoughness} m/km");
    }
}
