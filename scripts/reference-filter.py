#!/usr/bin/env python3
"""Gives the comment at the head of a public header to the class that the header is named after, or
to the header itself where there is no such class, so that the reference shows it there."""
import re
import sys

path = sys.argv[1]
text = open(path, encoding="utf-8").read()
name = re.sub(r".*/|\.h$", "", path)
lines = text.split("\n")
head = 0
while path.endswith(".h") and head < len(lines) and lines[head].startswith("//"):
    head += 1
if head > 0:
    comment = [line[2:].strip() for line in lines[:head]]
    comment[0] = re.sub(rf"^{name}(\.h)?:\s*", "", comment[0])
    comment[0] = comment[0][:1].upper() + comment[0][1:]
    code = "\n".join(lines[head:])
    is_class = re.search(rf"\b(class|struct)\s+(KOV_EXPORT\s+)?{name}\b[^;]*\{{", code)
    print(f"/// \\class {name}" if is_class else "/// \\file")
    print("\n".join(f"/// {line}".rstrip() for line in comment))
    text = code
sys.stdout.write(text)
