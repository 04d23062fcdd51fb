"""Writes the number of each string of the array, as rows for the test of the daemon's post-processes."""

from codegen.writers.output import c_string, notice

HEAD = notice("data/mib/conventions.def") + """\
// For each convention: CONVENTION(POST_PROCESS, API ENUMERATION), rows TEXT(STRING, NUMBER), END(NUMBER OF ALL
// OTHER STRINGS).
"""


def render(found):
    lines = [HEAD]
    for each in found.conventions.values():
        if each.option("from"):
            lines.append(f"CONVENTION({each.option('from')}_post_process, {c_string(each.option('api'))})\n")
            lines += [f"TEXT({c_string(text)}, {value.number})\n" for value in each.values for text in value.texts]
            lines += [f"END({value.number})\n" for value in each.values if not value.texts]
    return "".join(lines)
