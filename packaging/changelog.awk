# Turns CHANGELOG.md into a Debian changelog. Takes -v maintainer="NAME <ADDRESS>".

# An item in lines of less than 80 characters.
function print_item(    words, count, i, line) {
  if (item == "") return
  count = split(item, words, " ")
  line = "  *"
  for (i = 1; i <= count; ++i) {
    if (length(line) + length(words[i]) > 76) { print line; line = "   " }
    line = line " " words[i]
  }
  print line
  item = ""
}

function print_signature(    command, stamp) {
  if (!day) return
  command = "date -u -R -d " day
  command | getline stamp
  close(command)
  printf "\n -- %s  %s\n", maintainer, stamp
}

/^## / {
  print_item()
  print_signature()
  if (day) print ""
  day = $3
  printf "vantrel (%s) unstable; urgency=medium\n\n", substr($2, 1, length($2) - 1)
}
/^- / { print_item(); item = substr($0, 3) }
/^  / { item = item $0 }
END { print_item(); print_signature() }
