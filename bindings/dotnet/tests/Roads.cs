using System;
using System.Linq;

namespace Vialto.Tests
{
    static class Roads
    {
        internal const float Interval = 0.125f; // m; exact in binary
        internal const int Samples = 2400;
        internal const float SlabLength = 5.0f; // m

        internal static readonly float[] Flat = new float[Samples];
        internal static readonly float[] Wave = Road(x => 0.005 * Math.Sin(0.2 * Math.PI * x));
        // Every second slab lies 4 mm higher.
        internal static readonly float[] Slabs =
            Road(x => Math.Floor(x / SlabLength) % 2.0 == 1.0 ? 0.004 : 0.0);

        internal static float[] Road(Func<double, double> elevation)
        {
            return Enumerable.Range(0, Samples)
                .Select(i => (float)elevation(i * Interval)).ToArray();
        }

        internal static float[] Rough(int seed)
        {
            var noise = new Random(seed);
            double height = 0.0;
            return Road(x => height += 0.0005 * (noise.NextDouble() - 0.5));
        }
    }
}
