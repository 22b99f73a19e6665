# From CHANGELOG.md to the form that Debian's tools read. Takes the variable `contact`.
function finish_item(    words, count, i, line) {
    count = split(item, words, " ")
    line = "  *"
    for (i = 1; i <= count; i++) {
        if (length(line) + length(words[i]) > 78) {
            print line
            line = "   "
        }
        line = line " " words[i]
    }
    if (count > 0) {
        print line
    }
    item = ""
}
function finish_release() {
    finish_item()
    if (date != "") {
        command = "date --utc --rfc-email --date=" date
        command | getline stamp
        close(command)
        printf "\n -- %s  %s\n\n", contact, stamp
    }
}
/^## / {
    finish_release()
    date = $4 # None for what is not released yet.
    if (date != "") {
        printf "zentrill (%s) unstable; urgency=medium\n\n", $2
    }
    next
}
date == "" { next }
/^- / {
    finish_item()
    item = substr($0, 3)
    next
}
/^  [^ ]/ { item = item $0 }
END { finish_release() }
