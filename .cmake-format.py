# How cmake-format lays out the build's files.
with section("format"):
    line_width = 120
    dangle_parens = True
    keyword_case = "unchanged"
    max_subgroups_hwrap = 4
    max_pargs_hwrap = 6
    max_prefix_chars = 3
with section("markup"):
    enable_markup = False
with section("parse"):
    additional_commands = {
        "zentrill_bench": {"pargs": 1, "flags": ["SCREEN"], "kwargs": {"SOURCES": "*", "LINK": "*"}},
        "zentrill_library": {"pargs": 1, "kwargs": {"SOURCES": "*", "LINK": "*", "PRIVATE_LINK": "*"}},
        "zentrill_test": {
            "pargs": 1,
            "kwargs": {"SOURCES": "*", "LINK": "*", "HEADERS": "*", "TIMEOUT": 1, "COST": 1, "PREFIX": 1},
        },
    }
