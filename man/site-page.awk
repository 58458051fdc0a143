# Turns docs/files.md into the manual page vantrel-site(5), so that both say the same. Knows the
# little Markdown that document uses: headings, paragraphs, tables, one kind of code block, `code`
# and *emphasis*.

function roff(text,    out, i, c, bold, italic) {
  gsub(/\\/, "\\e", text)
  gsub(/-/, "\\-", text)
  out = ""
  for (i = 1; i <= length(text); ++i) {
    c = substr(text, i, 1)
    if (c == "`") {
      bold = !bold
      out = out (bold ? "\\fB" : "\\fR")
    } else if (c == "*" && !bold) {
      italic = !italic
      out = out (italic ? "\\fI" : "\\fR")
    } else {
      out = out c
    }
  }
  if (out ~ /^[.']/) out = "\\&" out
  return out
}

function print_row(line, heading,    cells, count, i) {
  gsub(/`\|/, "`\001", line)
  gsub(/\|`/, "\001`", line)
  count = split(line, cells, /\|/)
  for (i = 2; i < count; ++i) {
    gsub(/^ +| +$/, "", cells[i])
    gsub(/\001/, "|", cells[i])
    if (i > 2) printf "\t"
    if (i == count - 1) printf "T{\n%s\nT}", roff(cells[i])
    else printf "%s", roff(cells[i])
  }
  print ""
}

function start_table(line,    count, i) {
  count = gsub(/\|/, "|", line) - 1
  print ".TS"
  for (i = 1; i < count; ++i) printf "lB "
  print "lBx"
  for (i = 1; i < count; ++i) printf "l "
  print "lx."
}

BEGIN {
  print "'\\\" t"
  print ".TH VANTREL\\-SITE 5 \"@DATE@\" \"vantrel\" \"File formats\""
  print ".SH NAME\nvantrel\\-site \\- the files of a site, byte by byte\n.SH DESCRIPTION"
}
/^# / { next }
/^```/ { print (code = !code) ? ".PP\n.nf" : ".fi"; next }
code { print roff($0); next }
/^\|[-|]+$/ { next }
/^\|/ { if (!table) start_table($0); table = 1; print_row($0); next }
table { print ".TE"; table = 0 }
/^### / { print ".SS " roff(substr($0, 5)); fresh = 1; next }
/^## / { print ".SH " toupper(roff(substr($0, 4))); fresh = 1; next }
/^$/ { if (!fresh) print ".PP"; next }
{ print roff($0); fresh = 0 }
END {
  if (table) print ".TE"
  print ".SH SEE ALSO\n.BR vantrel\\-cron (8),\n.BR vantrel\\-inspect (1)\n.PP"
  print "concepts.md and operating.md among the documents of the package: how a trade gets its"
  print "visitors, and how to keep a site running."
}
