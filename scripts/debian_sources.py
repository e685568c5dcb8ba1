"""Prints the machine's own Debian package sources as deb-src stanzas (deb822 form).

Reads one-line lists (*.list) and deb822 files (*.sources). Kept are entries of this release's own
suites with the component "main"; other vendors' repositories seldom have source packages. Options
such as Signed-By are kept, so that the signatures are checked as for every other package.
"""
import glob
import os
import re
import sys

ETC_APT = os.environ.get("APT_ETC", "/etc/apt")


def release_suites():
    """The names under which this release's suites may be configured."""
    codename = ""
    with open("/etc/os-release", encoding="utf-8") as release:
        for line in release:
            if line.startswith("VERSION_CODENAME="):
                codename = line.split("=", 1)[1].strip().strip('"')
    bases = {codename, "stable"} - {""}
    return {base + end for base in bases for end in ("", "-updates", "-security", "/updates")}


def stanzas_of_sources(text):
    """deb822: stanzas between blank lines; a line that begins with a blank continues its field."""
    for block in re.split(r"\n\s*\n", text):
        fields, name = {}, None
        for line in block.splitlines():
            if line.startswith("#"):
                continue
            if line[:1] in " \t" and name:
                fields[name] += "\n" + line
            elif ":" in line:
                name, value = line.split(":", 1)
                name = name.strip().lower()
                fields[name] = value.strip()
        if fields and fields.get("enabled", "yes").lower() not in ("no", "false", "0"):
            yield fields


ONE_LINE = re.compile(r"^\s*deb\s+(?:\[([^]]*)\]\s+)?(\S+)\s+(\S+)\s+([^#]+)")


def stanzas_of_list(text):
    """The one-line form: deb [options] uri suite component..."""
    for line in text.splitlines():
        match = ONE_LINE.match(line)
        if not match:
            continue
        fields = {"types": "deb", "uris": match[2], "suites": match[3],
                  "components": match[4].strip()}
        for option in (match[1] or "").split():
            name, _, value = option.partition("=")
            fields[name.lower()] = value.replace(",", " ")
        yield fields


def all_stanzas():
    lists = [ETC_APT + "/sources.list"] + sorted(glob.glob(ETC_APT + "/sources.list.d/*.list"))
    for path in filter(os.path.exists, lists):
        with open(path, encoding="utf-8") as file:
            yield from stanzas_of_list(file.read())
    for path in sorted(glob.glob(ETC_APT + "/sources.list.d/*.sources")):
        with open(path, encoding="utf-8") as file:
            yield from stanzas_of_sources(file.read())


def source_stanza(fields, wanted):
    """The deb-src twin of an entry, or None for an entry that is not this release's."""
    suites = [suite for suite in fields.get("suites", "").split() if suite in wanted]
    if not suites or "main" not in fields.get("components", "").split():
        return None
    twin = {"Types": "deb-src", "URIs": fields["uris"], "Suites": " ".join(suites),
            "Components": "main"}
    for name in ("signed-by", "trusted", "check-valid-until", "allow-insecure", "snapshot"):
        if name in fields:
            twin[name.title()] = fields[name]
    return twin


def main():
    wanted = release_suites()
    written = 0
    for fields in all_stanzas():
        twin = source_stanza(fields, wanted)
        if twin:
            print("\n".join(f"{name}: {value}" for name, value in twin.items()) + "\n")
            written += 1
    if not written:
        sys.exit("debian_sources: no Debian package source is configured on this machine")


if __name__ == "__main__":
    main()
