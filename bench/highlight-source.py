#!/usr/bin/env python3
# Writes a source file of about SIZE bytes in LANGUAGE (cpp or py) for bench/highlight.sh: varied
# functions with comments, strings, numbers, keywords and types, as a large real file has them.
# Fixed seed, so every run times the same text.
#   bench/highlight-source.py LANGUAGE SIZE OUT
import random
import sys

language, size, out = sys.argv[1], int(sys.argv[2]), sys.argv[3]
rng = random.Random(11)
words = ("value count index buffer result item node parent child offset length name path entry "
         "cache state total width height source target status error options").split()


def ident():
    return rng.choice(words) + rng.choice(["", "_" + rng.choice(words), str(rng.randrange(100))])


def cpp_block(n):
    name, arg = ident(), ident()
    lines = [f"// {ident()} {ident()}: computes the {ident()} of a {ident()} (case {n}).",
             f"static std::vector<int> {name}_{n}(const std::string& {arg}, size_t limit = {rng.randrange(4096)})",
             "{",
             f"    std::vector<int> {ident()}s;",
             f"    for (size_t i = 0; i < limit; ++i) {{",
             f"        if ({arg}.size() > {rng.randrange(1000)} && i % {rng.randrange(2, 9)} == 0)",
             f"            continue; /* skip {ident()} */",
             f"        const double ratio = {rng.random():.4f} * i + 0x{rng.randrange(65536):04X};",
             f"        std::printf(\"%s: %zu {ident()} \\n\", {arg}.c_str(), i);",
             "    }",
             f"    return {{}};",
             "}",
             ""]
    return "\n".join(lines) + "\n"


def py_block(n):
    name, arg = ident(), ident()
    lines = [f"# {ident()} {ident()}: computes the {ident()} of a {ident()} (case {n}).",
             f"def {name}_{n}({arg}, limit={rng.randrange(4096)}):",
             f"    \"\"\"Returns the {ident()} for {ident()}.\"\"\"",
             f"    {ident()} = []",
             f"    for i in range(limit):",
             f"        if len({arg}) > {rng.randrange(1000)} and i % {rng.randrange(2, 9)} == 0:",
             f"            continue  # skip {ident()}",
             f"        ratio = {rng.random():.4f} * i + 0x{rng.randrange(65536):04X}",
             f"        print(f\"{{i}}: {ident()}\", {arg}, None, True)",
             f"    return {{'{ident()}': {arg}}}",
             ""]
    return "\n".join(lines) + "\n"


block = cpp_block if language == "cpp" else py_block
written = 0
with open(out, "w") as f:
    f.write("#include <cstdio>\n#include <string>\n#include <vector>\n\n" if language == "cpp" else "import os\n\n")
    n = 0
    while written < size:
        text = block(n)
        f.write(text)
        written += len(text)
        n += 1
