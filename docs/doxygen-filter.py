#!/usr/bin/env python3
"""Doxygen input filter for the kvkit headers: reads a header written with plain // comments and
prints it with those comments as documentation, line for line, leaving the file untouched.

The headers' conventions, as the filter reads them:
- the comment block at the top of a header describes the whole header (the family);
- a comment block directly above a declaration describes it, and every declaration that follows
  it without a blank line or another comment in between (a pair of Set/Get functions, say);
- a comment at the end of a line describes that member, constant or field; when every
  declaration of such a run has one, the block above them is the run's heading;
- a comment block followed by a blank line is a section heading, not documentation.

Text is escaped so that Doxygen shows it as written; `code spans` are kept, and lines indented
further than the text around them (examples) become code blocks.
"""
import re
import sys

COMMENT = re.compile(r"^(\s*)//(?!/)\s?(.*)$")
TRAILING = re.compile(r"^(?P<code>.*?\S)(?P<space>\s+)//(?!/)\s?(?P<text>.*)$")
# Lines that begin a declaration: not indented, not a static assertion, not a closing brace.
DECLARATION_START = re.compile(r"^(?!static_assert\b)([A-Za-z_]|#define\b)")
SPECIAL = re.compile(r"([\\@<>&#%$])")


def escape(text):
    """Doxygen's command characters escaped outside `code spans`."""
    parts = text.split("`")
    for i in range(0, len(parts), 2):
        parts[i] = SPECIAL.sub(r"\\\1", parts[i])
    return "`".join(parts)


def joined(texts):
    return " ".join(escape(text.strip()) for text in texts if text.strip()).replace("*/", "* /")


def doc_lines(indent, texts):
    """The comment block as /// lines; further-indented lines as a code block."""
    lines = []
    for text in texts:
        if text.startswith("  "):
            lines.append(f"{indent}///     {text.strip()}")
        else:
            lines.append(f"{indent}/// {escape(text)}".rstrip())
    return lines


def trailing_comment(line):
    match = TRAILING.match(line)
    # A // inside a string literal is not a comment.
    if match and match.group("code").count('"') % 2 == 0:
        return match
    return None


def convert_trailing(line):
    match = trailing_comment(line)
    if not match:
        return line
    return f"{match.group('code')}{match.group('space')}///< {escape(match.group('text'))}"


def filter_header(lines):
    out = [convert_trailing(line) for line in lines]
    count = len(lines)
    seen_code = False
    i = 0
    while i < count:
        if not COMMENT.match(lines[i]):
            seen_code = seen_code or bool(lines[i].strip())
            i += 1
            continue
        start = i
        indent = COMMENT.match(lines[i]).group(1)
        texts = []
        while i < count and COMMENT.match(lines[i]):
            texts.append(COMMENT.match(lines[i]).group(2))
            i += 1
        after = lines[i] if i < count else ""

        if not seen_code and after.strip() == "#pragma once":
            out[start:i] = doc_lines(indent, texts)
            out[i] = "/// @file"
            continue
        if not after.strip():
            continue  # a section heading stays a plain comment

        # The run the block documents: lines up to a blank line or the next comment block.
        end = i
        declarations = []
        while end < count and lines[end].strip() and not COMMENT.match(lines[end]):
            if DECLARATION_START.match(lines[end]):
                declarations.append(end)
            end += 1
        ends_at_blank = end < count and not lines[end].strip()
        if (len(declarations) > 1 and ends_at_blank and
                all(trailing_comment(lines[k]) for k in declarations)):
            # Each has its own comment: the block is the heading of a member group.
            out[start] = f"{indent}/** @name {joined(texts)} */"
            for k in range(start + 1, i):
                out[k] = f"{indent}//"
            out[declarations[0]] = "/** @{ */ " + out[declarations[0]]
            out[end] = "/** @} */"
        else:
            out[start:i] = doc_lines(indent, texts)
            for k in declarations[1:]:
                out[k] = f"/** {joined(texts)} */ " + out[k]
        seen_code = True
    return out


def main():
    with open(sys.argv[1], encoding="utf-8") as header:
        lines = header.read().split("\n")
    sys.stdout.write("\n".join(filter_header(lines)))


if __name__ == "__main__":
    main()
