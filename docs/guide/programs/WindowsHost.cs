using System;
using System.Linq;
using Vialto;

static class WindowsHost
{
    static int Main()
    {
        const float interval = 0.025f; // m
        float[] profile = Enumerable.Range(0, 8000) // waves of 10 m, 5 mm high
            .Select(i => (float)(0.005 * Math.Sin(0.2 * Math.PI * i * interval))).ToArray();
        try
        {
            Console.WriteLine($"IRI {1000.0f * Analysis.RideIndex(profile, interval):F2} m/km");
            return 0;
        }
        catch (DllNotFoundException)
        {
            Console.Error.WriteLine("vialto.dll lies neither beside the program nor on the path");
        }
        catch (BadImageFormatException)
        {
            Console.Error.WriteLine($"vialto.dll is not for {8 * IntPtr.Size} bits");
        }
        catch (VialtoException problem)
        {
            Console.Error.WriteLine(problem.Message);
        }
        return 1;
    }
}
