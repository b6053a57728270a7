# Makes the manual page of docs/format.md: awk -f manual.awk format.md >calljournal.5. Of Markdown it knows what that
# page uses: headings, paragraphs, lists, tables, blocks of code, `code` and **titles**.

BEGIN {
    print "'\\\" t\n.\\\" Made from docs/format.md.\n.Dd November 21, 2026\n.Dt CALLJOURNAL 5\n.Os"
    print ".Sh NAME\n.Nm calljournal\n.Nd the stored format of the call journal\n.Sh DESCRIPTION"
}

# Code, whose characters a formatter would make typography or commands of.
function literal(text) {
    gsub(/\\/, "\\e", text)
    gsub(/-/, "\\-", text)
    gsub(/'/, "\\(aq", text)
    gsub(/\./, "\\\\\\&.", text)
    return text
}

# Text with `code` in bold.
function inline(text,    parts, count, i, result) {
    count = split(text, parts, "`")
    for (i = 1; i <= count; ++i) {
        result = result (i % 2 ? parts[i] : "\\fB" literal(parts[i]) "\\fP")
    }
    return result
}

# Prints what was collected of a paragraph or a point of a list, a line for each sentence, none longer than 78.
function end_paragraph(    words, count, i, line) {
    count = split(inline(paragraph), words, " ")
    for (i = 1; i <= count; ++i) {
        if (line != "" && (length(line " " words[i]) > 78 || line ~ /[^.][.:]$/)) {
            print line
            line = ""
        }
        line = line (line == "" ? "" : " ") words[i]
    }
    if (line != "") {
        print line
    }
    paragraph = ""
}

function end_list() {
    if (in_list) {
        print ".El"
        in_list = 0
    }
}

# Prints the collected rows, the first as the head.
function end_table(    row, column, format) {
    for (column = 1; column <= columns; ++column) {
        format = format (column > 1 ? " " : "") "l" (column < columns ? "2" : "")
    }
    print (begun ? ".Pp\n" : "") ".TS"
    gsub(/l/, "lb", format)
    print format
    gsub(/lb/, "l", format)
    print format "."
    for (row = 1; row <= rows; ++row) {
        for (column = 1; column <= columns; ++column) {
            printf "%s%s", inline(cells[row, column]), column < columns ? "\t" : "\n"
        }
    }
    print ".TE"
    rows = 0
    begun = 1
}

# Ends what came before a line of another kind.
function finish() {
    end_paragraph()
    if (rows > 0) {
        end_table()
    }
}

in_code && /^```$/ { print ".Ed"; in_code = 0; next }
in_code { print literal($0); next }
/^# / { next }
/^```/ { finish(); end_list(); print ".Bd -literal -offset indent"; in_code = 1; next }
/^## / { finish(); end_list(); print ".Sh " toupper(substr($0, 4)); begun = 0; next }
/^### / { finish(); end_list(); print ".Ss " substr($0, 5); begun = 0; next }
/^\|( ---)/ { next }
/^\| / {
    end_paragraph()
    ++rows
    columns = split(substr($0, 3, length($0) - 4), parts, / \| /)
    for (i = 1; i <= columns; ++i) {
        cells[rows, i] = parts[i]
    }
    next
}
/^$/ { finish(); next }
/^- / { finish(); if (!in_list) { print ".Bl -bullet"; in_list = 1 } print ".It"; paragraph = substr($0, 3); next }
/^\*\*.*\*\*$/ { finish(); end_list(); print ".Pp\n.Sy " substr($0, 3, length($0) - 4); begun = 1; next }
paragraph == "" && !/^ / { finish(); end_list(); if (begun) { print ".Pp" } }
{ paragraph = paragraph " " $0; begun = 1 }
END { finish(); end_list(); print ".Sh SEE ALSO\n.Xr calljournal 1" }
