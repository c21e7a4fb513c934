#!/usr/bin/env python3
"""usage: chart.py RESULTS.json
Draws the results of a benchmark run as SVG: for jobs that other libraries do too, how many times as
long the best of those takes."""

import html
import math
import sys

import report

# In the order of the chart: the job's name in the table, and what it is called here.
JOBS = {
    "parse with a size, fixed form": "text to an instant",
    "parse with a size, mixed forms": "text to an instant, many forms",
    "instant to RFC 3339, 3 digits": "instant to text",
    "print with offset": "record to text",
    "compact duration": "duration for people",
    "exact duration": "duration to text",
    "parse a duration": "text to a duration",
    "UTC breakdown": "UTC calendar",
    "zone breakdown": "calendar of a zone",
    "zone composition": "calendar of a zone, back",
    "zone resolve": "skipped and repeated times",
    "zone load": "loading a zone",
    "range containment": "instant in a range",
    "union, 1,000 and 1,000": "union of two sets of 1,000",
    "find in 1,000": "look-up in a set of 1,000",
    "monotonic reading": "reading the clock",
}
LEFT, WIDTH, ROW, TOP = 250, 420, 26, 58
MOST = 20


def x_of(ratio):
    """Where a ratio lies on the axis, from a third to MOST in equal steps of a factor."""
    return LEFT + WIDTH * math.log(min(max(ratio, 1 / 3), MOST) * 3) / math.log(MOST * 3)


def text(x, y, words, style=""):
    return f'<text x="{x:.1f}" y="{y:.1f}" {style}>{html.escape(words)}</text>'


def main():
    jobs = report.read(report.load(sys.argv[1]))
    shown = [(label, report.ours(jobs[job]), report.best_peer(jobs[job]), jobs[job])
             for job, label in JOBS.items() if job in jobs and report.best_peer(jobs[job])]
    height = TOP + ROW * len(shown) + 16
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 900 {height}" '
           'font-family="sans-serif" font-size="13">',
           f'<rect width="900" height="{height}" fill="#fff"/>',
           text(16, 22, "How many times as long the best other library takes",
                'font-weight="bold" font-size="15"')]
    for ratio, name in ((0.5, "½"), (1, "1, as long as ours"), (2, "2"), (5, "5"), (10, "10")):
        x = x_of(ratio)
        out.append(f'<line x1="{x:.1f}" y1="{TOP - 8}" x2="{x:.1f}" y2="{height - 12}" '
                   f'stroke="{"#444" if ratio == 1 else "#ddd"}"/>')
        out.append(text(x, TOP - 14, name, 'text-anchor="middle" fill="#444" font-size="11"'))
    for row, (label, ours, peer, columns) in enumerate(shown):
        y = TOP + ROW * row
        ratio = columns[peer].median() / ours.median()
        begin, end = sorted((x_of(1), x_of(ratio)))
        colour = "#2a7f62" if ratio >= 1 else "#b5532a"
        out.append(text(LEFT - 8, y + 14, label, 'text-anchor="end"'))
        out.append(f'<rect x="{begin:.1f}" y="{y + 2}" width="{max(end - begin, 1):.1f}" height="16" '
                   f'fill="{colour}"/>')
        out.append(text(max(end, x_of(1)) + 6, y + 14, f"{ratio:.3g}  {peer}", 'fill="#444" font-size="12"'))
    out.append("</svg>")
    print("\n".join(out))


main()
