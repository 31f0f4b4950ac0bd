// Functions, records and named values are those of the C header, defaults those of the Python
// package.
using System;
using System.Collections.Generic;
using System.Diagnostics;
using System.IO;
using System.Linq;
using System.Reflection;
using System.Runtime.InteropServices;
using System.Text.RegularExpressions;
using System.Xml;
using NUnit.Framework;

namespace Vialto.Tests
{
    [TestFixture]
    public class InterfaceTests
    {
        // The top of the tree.
        static readonly string Source = Environment.GetEnvironmentVariable("VIALTO_SOURCE");
        static readonly string Header = Regex.Replace(
            File.ReadAllText(Source + "/include/vialto/vialto.h"), @"/\*.*?\*/", "",
            RegexOptions.Singleline);

        [Test]
        public void FunctionsOfTheHeader()
        {
            string prototypes = string.Join("\n", Regex
                .Matches(Header, @"VIALTO_CALL\s+(\w+)\(([^)]*)\)").Cast<Match>()
                .Select(match => match.Groups[1] + "(" +
                        Regex.Replace(match.Groups[2].Value, @"\s+", " ").Trim() + ")"));
            string functions = string.Join("\n", typeof(Native).GetMethods()
                .Where(method => method.IsStatic && method.ReturnType == typeof(Outcome))
                .Select(method => method.Name + "(" +
                        string.Join(", ", method.GetParameters().Select(Declaration)) + ")"));
            Assert.That(functions, Is.EqualTo(prototypes));
        }

        // What is given and not returned is const in C, unless it goes by value.
        static string Declaration(ParameterInfo parameter)
        {
            Type type = parameter.ParameterType;
            bool returned = parameter.IsOut || type.IsByRef && !parameter.IsIn;
            string name = (type.HasElementType && !returned ? "const " : "") +
                CType(type.HasElementType ? type.GetElementType() : type);
            return name + (type.HasElementType ? "* " : " ") + parameter.Name;
        }

        static string CType(Type type)
        {
            return type.IsEnum || type == typeof(int) ? "int32_t" : type == typeof(float) ? "float"
                : type == typeof(double) ? "double" : type == typeof(byte) ? "char" : type.Name;
        }

        [Test]
        public void RecordsOfTheHeader()
        {
            var records = typeof(Native).Assembly.GetTypes()
                .Where(type => Regex.IsMatch(type.Name, "^t[A-Z]")).ToArray();
            Assert.That(records.Select(record => record.Name), Is.EquivalentTo(Regex
                .Matches(Header, @"typedef struct (\w+)").Cast<Match>()
                .Select(match => match.Groups[1].Value)));
            var expected = new List<string>();
            var program = new List<string> {
                "#include <stdio.h>", "#include <vialto/vialto.h>", "int main(void) {"
            };
            foreach (Type record in records)
            {
                expected.Add(record.Name + " " + Marshal.SizeOf(record));
                program.Add($"printf(\"{record.Name} %zu\\n\", sizeof({record.Name}));");
                foreach (FieldInfo field in record.GetFields())
                {
                    // The type is the compiler's to judge: a pointer to another is an error.
                    string type = CType(field.FieldType.GetElementType() ?? field.FieldType);
                    string first = field.FieldType.IsArray ? "[0]" : "";
                    expected.Add($"{field.Name} {Marshal.OffsetOf(record, field.Name)}");
                    program.Add($"{{ {record.Name} r; {type}* p = &r.{field.Name}{first}; " +
                                $"printf(\"{field.Name} %td\\n\", (char*)p - (char*)&r); }}");
                }
            }
            program.Add("return 0; }");
            Assert.That(Output(program), Is.EqualTo(expected));
        }

        // The lines that a C program prints.
        static string[] Output(IEnumerable<string> program)
        {
            string path = Path.GetTempFileName();
            File.WriteAllLines(path + ".c", program);
            Run("cc", $"-Werror -I{Source}/include {path}.c -o {path}");
            string output = Run(path, "");
            File.Delete(path + ".c");
            File.Delete(path);
            return output.Trim().Split('\n');
        }

        static string Run(string program, string arguments)
        {
            var start = new ProcessStartInfo(program, arguments) {
                UseShellExecute = false, RedirectStandardOutput = true
            };
            using (var process = Process.Start(start))
            {
                string output = process.StandardOutput.ReadToEnd();
                process.WaitForExit();
                Assert.That(process.ExitCode, Is.EqualTo(0), program);
                return output;
            }
        }

        // The documentation of a named value says which of the header's it is.
        [Test]
        public void NamedValuesOfTheHeader()
        {
            var expected = Regex.Matches(Header, @"enum \{(.*?)\}", RegexOptions.Singleline)
                .Cast<Match>()
                .SelectMany(match => match.Groups[1].Value.Split(','))
                .Select(value => Regex.Replace(value, @"\s", ""));
            var documentation = new XmlDocument();
            documentation.Load("Vialto.xml");
            var documented = documentation.SelectNodes("//member[starts-with(@name, 'F:')]")
                .Cast<XmlElement>()
                .Where(member => !member.GetAttribute("name").StartsWith("F:Vialto.Defaults."))
                .Select(member => member.SelectSingleNode(".//c").InnerText + "=" +
                                  Value(member.GetAttribute("name").Substring("F:".Length)));
            Assert.That(documented, Is.EquivalentTo(expected));
        }

        // Numbers and switches, as "function.parameter=value" or "Settings.field=value", and the
        // named ones as "NAME=value".
        [Test]
        public void DefaultsOfThePythonPackage()
        {
            string python = string.Join("\n",
                Directory.GetFiles(Source + "/python/vialto", "*.py").Select(File.ReadAllText));
            var named = Regex
                .Matches(File.ReadAllText(Source + "/python/vialto/defaults.py"),
                         @"^(\w+) = ([\d.]+)", RegexOptions.Multiline).Cast<Match>()
                .ToDictionary(one => one.Groups[1].Value, one => Number(one.Groups[2].Value));
            Assert.That(named.Select(one => one.Key + "=" + one.Value),
                        Is.EqualTo(typeof(Defaults).GetFields().Select(
                            field => Snake(field.Name).ToUpper() + "=" + field.GetValue(null))));
            Assert.That(Regex.Match(python, @"TWELVE_WHEELS = \((.*)\)").Groups[1].Value,
                        Is.EqualTo(string.Join(", ", Defaults.TwelveWheels)));
            var theirs = Regex
                .Matches(python, @"^(?:def|class) (\w+)(.*?)(?=^\S|\z)",
                         RegexOptions.Multiline | RegexOptions.Singleline).Cast<Match>()
                .SelectMany(match => Regex.Matches(match.Groups[2].Value,
                                                   @"(\w+): (?:float|int|bool) = ([\w.]+)")
                    .Cast<Match>().Select(one => match.Groups[1] + "." + one.Groups[1] + "=" +
                        (named.TryGetValue(one.Groups[2].Value, out string value)
                            ? value : Number(one.Groups[2].Value))));
            var ours = typeof(Analysis).GetMethods()
                .SelectMany(method => method.GetParameters().Select(parameter => new {
                    Name = Snake(method.Name) + "." + Snake(parameter.Name),
                    Value = parameter.ParameterType.IsEnum ? null : parameter.RawDefaultValue
                }))
                .Concat(new object[] { new Grinder(), new MustGrind(), new Filter() }
                    .SelectMany(settings => settings.GetType().GetProperties().Select(field => new {
                        Name = settings.GetType().Name + "." + Snake(field.Name),
                        Value = field.GetValue(settings)
                    })))
                .Where(one => one.Value is float || one.Value is int || one.Value is bool)
                .Select(one => one.Name + "=" + one.Value);
            Assert.That(ours.Except(theirs), Is.Empty);
        }

        // As .NET writes it.
        static string Number(string python)
        {
            return Regex.Replace(python, @"\.0$", "");
        }

        static string Snake(string name)
        {
            return Regex.Replace(name, "(?<=[a-z])[A-Z]|(?<=[A-Z])[A-Z](?=[a-z])", "_$0").ToLower();
        }

        static int Value(string name)
        {
            int dot = name.LastIndexOf('.');
            FieldInfo field = typeof(Native).Assembly.GetType(name.Substring(0, dot))
                .GetField(name.Substring(dot + 1));
            return Convert.ToInt32(field.GetRawConstantValue());
        }
    }
}
