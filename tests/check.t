What the doctor says of a file's contents, to the letter, at the limits of what is right: below each
command a line for each text that is tried. Where that is to change: see views.t.

    $ vantrel-sample-site site --trades 12 --hits 30 --days 9 --minutes 4 >/dev/null; cd site
    $ vantrel-cron; find . -exec touch -h -d '2026-11-16 13:07:20' {} +
    $ told() { vantrel-inspect check --verbose | grep -F -- ": $1: " | cut -d' ' -f3-; }
    $ says() { file=$1; shift; cp -p $file ../kept; for text; do printf "$text" >$file; told $file; done; cp -p ../kept $file; }

    $ cp -a ../site ../model; fresh() { cd ..; rm -rf site; cp -a model site; cd site; }

    $ says d/ds '1|1' '|1|1|1|0|' '|1|0|0|0|-1|4|2|90|' '|yes|1|2|no|-1|1|1|90|' '|1|0|1|0|-2|10|2|90|101|11|1|x|many|0|3|-5|' '|0|0|0|1|100|4|2|90|\n' '|1|0|0|1|0|4|2|90|5|4| '
    fewer than four switches: dynamic skim is off -> save the skim settings again in the administration
    dynamic skim is on, but has no condition -> save the skim settings again in the administration
    dynamic skim is on, but for nobody -> save the skim settings again in the administration
    line 1, piece 2: the switch "yes" is off: only "1" is on; line 1, piece 4: the switch "2" is off: only "1" is on; line 1, piece 5: the switch "no" is off: only "1" is on -> save the skim settings again in the administration
    line 1, piece 6: block 1: the skim "-2" is not -1 to 100; line 1, piece 10: block 2: the skim "101" is not -1 to 100; line 1, piece 11: block 2: there is no measure "11"; and 4 more -> save the skim settings again in the administration
    off
    line 1, piece 10: block 2 is cut short: "5|4| " has no effect -> save the skim settings again in the administration
    $ says d/se 'site11.example\nUNKNOWN\n' 'unknown\n\nA.example\nz.exampleZ\n' 'a b\na\tb\nspare*x\nok.example*site11.example' 'gallery\n[a.b]\n@x\n'
    line 1, piece 1: "site11.example" is the name of a trade, which gets the hits; line 2, piece 1: "UNKNOWN" has capitals and is never met: hits are in lower case -> correct the list in the administration
    line 3, piece 1: "A.example" has capitals and is never met: hits are in lower case; line 4, piece 1: "z.exampleZ" has capitals and is never met: hits are in lower case -> correct the list in the administration
    line 1, piece 1: "a b" has white space or control characters; line 2, piece 1: "a?b" has white space or control characters; line 3, piece 1: "spare" is the name of a trade, which gets the hits -> correct the list in the administration
    line 1, piece 1: "gallery" is the name of a trade, which gets the hits -> correct the list in the administration
    $ says d/proxy '' '1.2.3.4:80 1.2.3\n1.2.3.4.5 a.b.c.d 9.9.9.9\n' '...\n\n0.0.0.0 :x y\n1:2:3\n1.2.3./\n'
    0 addresses
    line 2, piece 1: "1.2.3.4.5" is no address and is never met; line 2, piece 1: "a.b.c.d" is no address and is never met -> one address w.x.y.z a line, a port behind a colon; ranges are not known
    line 4, piece 1: "1" is no address and is never met; line 5, piece 1: "1.2.3./" is no address and is never met -> one address w.x.y.z a line, a port behind a colon; ranges are not known
    $ says d/traffic.set '|0|-1|1|0|\n|1|0|1|0|\n|2|4|1|0|\n|3|+1|1e9|0|' '|0|3|-1e9|0|\n|1|0|1000000001|0|\n|2| 2 |-1000000001|0|\n|3|x||0|\n|4|0|1x|0|\n|5|0|nan|0|\n'
    line 1, piece 3: rule 0: there is no operation "-1"; line 3, piece 13: rule 2: there is no operation "4" -> save it again in the administration
    line 2, piece 9: rule 1: the value "1000000001" is no number; line 3, piece 14: rule 2: the value "-1000000001" is no number; line 4, piece 18: rule 3: the operation "x" is no number; and 3 more -> save it again in the administration
    $ says d/traffic.set "$(printf '|%s|0|1|0|\\n' {0..8})"'|9|7|x|0|\n'"$(printf '|%s|0|1|0|\\n' {10..20})"'|21|7|x|0|\n'"$(printf '|%s|0|1|0|\\n' {22..36})" 'x|0|0|1|0|\n' '|0|0|1|0|\n|1|0|1|0|0|\n|2|9|1|0|\n'
    holds 37 rules; those behind the 36th have no effect -> save it again in the administration
    line 1, piece 1: "x" stands where rule 0 begins: a piece was lost or added just before it, and all behind is shifted -> save it again in the administration
    line 2, piece 11: "0" stands where rule 2 begins: a piece was lost or added just before it, and all behind is shifted -> save it again in the administration
    $ for block in '0 1 2' '3 4 5' '10 11' '12 13 14' '15 16 17' '22 23' '24 25' '26 27' '0 1 4 5 11 12 13 16 17 23 25 27' '10 11 22 23'; do
    >   says d/traffic.set "$(for rule in {0..35}; do echo "|$rule|$([[ " $block " = *" $rule "* ]] && echo 2 || echo 1)|1|0|"; done)"
    > done
    the rules block every hit: none has a quality, and the built-in score is 0 for all -> set one of the blocking rules (operation 2) to add or subtract
    the rules block every hit: none has a quality, and the built-in score is 0 for all -> set one of the blocking rules (operation 2) to add or subtract
    the rules block every hit: none has a quality, and the built-in score is 0 for all -> set one of the blocking rules (operation 2) to add or subtract
    the rules block every click: none has a quality, and the built-in score is 0 for all -> set one of the blocking rules (operation 2) to add or subtract
    the rules block every click: none has a quality, and the built-in score is 0 for all -> set one of the blocking rules (operation 2) to add or subtract
    the rules block every click: none has a quality, and the built-in score is 0 for all -> set one of the blocking rules (operation 2) to add or subtract
    the rules block every click: none has a quality, and the built-in score is 0 for all -> set one of the blocking rules (operation 2) to add or subtract
    the rules block every click: none has a quality, and the built-in score is 0 for all -> set one of the blocking rules (operation 2) to add or subtract
    36 rules
    the rules block every hit and every click: none has a quality, and the built-in score is 0 for all -> set one of the blocking rules (operation 2) to add or subtract
    $ says d/geo.rating '' ' \n' '|0|a|\n|1|b|\n|2|c|\n|3|d|\n|4|e|\n|11|f|' '|1||\n|2| a|\n|3|a |\n|2|A|\n|1|a|\n|3|b|\n|1|C|\n|1|c|\n' '|1|a|\n|3|A|\n|1|a|\n|3|a|\n|2|B|\n|3|B|\n' '|1|a|\nx|1|b|\n|9|c|\n|1|' '|1|a|\n|1'
    holds no entry: nothing is rated by it
    holds no entry: nothing is rated by it
    line 1, piece 2: there is no group "0", so that "a" is not rated; line 5, piece 14: there is no group "4", so that "e" is not rated; line 6, piece 17: there is no group "11", so that "f" is not rated -> save it again in the administration
    line 1, piece 2: an empty text, which matches no country; line 2, piece 6: " a" has white space at an end; line 3, piece 9: "a " has white space at an end -> save it again in the administration
    line 2, piece 6: "A" stands in the groups 1 and 3; line 3, piece 9: "a" stands in the groups 1 and 3; line 4, piece 12: "a" stands in the groups 1 and 3 -> save it again in the administration
    line 1, piece 4: "?x" stands where an entry begins: a piece was lost or added just before it, and all behind is shifted -> save it again in the administration
    line 1, piece 4: the last entry is cut short: "?|1" -> save it again in the administration
    $ says d/agent.rating '|1||'; says d/request.rating '|1||'; says d/tags.rating '|3||\n|3|\0\0|'
    line 1, piece 2: an empty text, which matches every user agent -> save it again in the administration
    line 1, piece 2: an empty text, which matches every empty request -> save it again in the administration
    2 NUL bytes, the first is byte 9: not as it was written -> save it anew in the administration, or put a copy back; a power cut does this
    $ says d/ip.psv '' '|5|5|US|' '|5|5|US|\n|7|8|US|' '|1|16777216|US|\n' '|1|16777215|US|\n' '|0|4294967295|US|' '|5|9|US|\n|9|9|US|\n|10|10|US|\n|12|11|US|\n|13|16777777|DE|' '|1|2|US|\n|3|20000000||\n|20000001|20000002|' '|1|2\n' '|1|20000000|US|\n|1.2.3.4|1.2.3.5|US|\n' '|1.5|20000000|US|'
    holds no range: every country is unknown -> install the table again
    1 range covers 1 address, next to nothing: nearly every country is unknown -> install the table again, ascending and without overlaps
    2 ranges cover 3 addresses, next to nothing: nearly every country is unknown -> install the table again, ascending and without overlaps
    1 range covers 16777216 addresses
    1 range covers 16777215 addresses, next to nothing: nearly every country is unknown -> install the table again, ascending and without overlaps
    1 range covers 4294967296 addresses
    line 2, piece 8: range 2 (9 to 9) is out of order, overlaps the one before it or ends before it begins; line 4, piece 16: range 4 (12 to 11) is out of order, overlaps the one before it or ends before it begins -> install the table again, ascending and without overlaps
    range 2 has no country: line 2; range 3 has no country: line 3 -> install the table again, ascending and without overlaps
    range 1 has no country: line 1 -> install the table again, ascending and without overlaps
    line 2 has addresses with dots, "|1.2.3.4|1.2.3.5|US|": the run reads the number before the first dot -> convert the table: w.x.y.z is w*16777216 + x*65536 + y*256 + z
    line 1 has addresses with dots, "|1.5|20000000|US|": the run reads the number before the first dot -> convert the table: w.x.y.z is w*16777216 + x*65536 + y*256 + z
    $ says d/set '|3|%080d|\n|5|x|\n|0||\n|1|\n|1|\n|0|\n' '|x|%081d|\n||%081d|\n|9999999999|y|\n|0|\n|3|\n|1|\n' '|3|\n|5|\n|0|\n|0|\n|4|\n|-1|\n' '|3|\n|5|\n|0|\n|1|\n|0|\n|7647|\n'  '|3|\n|5|\n|0|\n|-1|\n|2|\n|7648|\n' '|3|\n|5|\n|0|\n|1|\n|2|\n|99999|\n' '|3|\n|5|\n|0|\n|0|\n|2|\n|1|\n'
    six lines
    line 1: "x" is no number and counts as 0; line 1: the text is longer than 80 characters and is cut in d/out.lst; line 2: "" is no number and counts as 0; and 2 more -> save the main settings again in the administration
    line 5: there is no state of synchronisation "4" -> save the main settings again in the administration
    line 5: there is no state of synchronisation "0" -> save the main settings again in the administration
    line 4: no click counts in cef with the limit -1 -> save the main settings again in the administration
    line 6: a trade needs 99999 unique hits a day, and none has them; the best, site22.example, has 7065: visitors go by quotas and guarantees alone -> lower the minimum in the main settings
    line 4: no click counts in cef with the limit 0 -> save the main settings again in the administration
    $ least() { says d/set "|3|\n|5|\n|0|\n|1|\n|2|\n|$1|\n"; }; for n in {11..22}; do set-trade.py . $n override=0; done; least 7065; least 7066; set-trade.py . 15 override=1; least 7066
    six lines
    line 6: a trade needs 7066 unique hits a day, and none has them; the best, site22.example, has 7065: no trade gets visitors -> lower the minimum in the main settings
    line 6: a trade needs 7066 unique hits a day, and none has them; the best, site22.example, has 7065: visitors go by quotas and guarantees alone -> lower the minimum in the main settings
    $ says d/out.mod '' '|' '|100|100|100|3|2|1|0||0||' '100|100|100|0|0|1|0||0|x' '||||1|-1||2||x|' '|1|1|1|2147483647|1|-2147483648|1|9|11| |' '|-1|0|x|3|2|1|||10|1|' '|1|1|1|||1|0||10| |' '1|1|1|x|x|x|0||10|1' '1|2'
    has 0 whole fields instead of 10; those that are missing are empty; field 3, the weight of 60 minutes: "" is no number and counts as 0; field 4, the weight of 24 hours: "" is no number and counts as 0; and 2 more -> save the outgoing settings again in the administration
    has 0 whole fields instead of 10; those that are missing are empty; field 3, the weight of 60 minutes: "" is no number and counts as 0; field 4, the weight of 24 hours: "" is no number and counts as 0; and 2 more -> save the outgoing settings again in the administration
    built-in score
    has 8 whole fields instead of 10; those that are missing are empty; field 8: "x" is not 10: the formula is not used -> save the outgoing settings again in the administration
    field 6: "2" is not 1: no weights are generated; field 4, the weight of 24 hours: "-1" is below 0; field 5, the weight of 7 days: "" is no number and counts as 0; and 2 more -> save the outgoing settings again in the administration
    field 5, the weight of 7 days: "-2147483648" is below 0; the weights of the three windows (fields 3 to 5) sum to 0: no score is a number, and all trades rank as in the index -> save the outgoing settings again in the administration
    field 0, the factor of cef per uin: "-1" is below 0; field 2, the factor of ctt per out: "x" is no number and counts as 0 -> save the outgoing settings again in the administration
    field 9: the formula is switched on, but empty: all score 1 -> write a formula, or another text than 10 into field 8
    has 8 whole fields instead of 10; those that are missing are empty; field 3, the weight of 60 minutes: "x" is no number and counts as 0; field 4, the weight of 24 hours: "x" is no number and counts as 0; and 1 more -> save the outgoing settings again in the administration
    has 0 whole fields instead of 10; those that are missing are empty; field 3, the weight of 60 minutes: "" is no number and counts as 0; field 4, the weight of 24 hours: "" is no number and counts as 0; and 2 more -> save the outgoing settings again in the administration
    $ says d/out.mod '|1|1|1|3|2|1|0||10|uin24/(rin60-rin60)+%%|' '|1|1|1|3|2|1|0||10|uin24*|' '|1|1|1|3|2|1|0||10|(1+nothing*1e|' '|1|1|1|3|2|1|0||10|1/(1000-uin24)|' '|1|1|1|3|2|1|0||10|*1+a+b+c+d|' "|1|1|1|3|2|1|0||10|$(printf '(%.0s' {1..300})1|"
    field 9, character 6: division by zero: the whole product counts as 1, for 11 trades; with its numbers "1028/(61-61)+%" -> correct the formula; vantrel-inspect preview --with shows what it gives
    field 9, character 21: "%" begins with a character no formula is made of; what stands behind is not read, for 11 trades -> correct the formula; vantrel-inspect preview --with shows what it gives
    field 9, character 21: a number, a name or "(" is expected where "%" stands; 1 is taken, for 11 trades -> correct the formula; vantrel-inspect preview --with shows what it gives
    field 9, character 7: the formula breaks off where a number, a name or "(" is expected; 1 is taken, for 11 trades -> correct the formula; vantrel-inspect preview --with shows what it gives
    field 9, character 4: "nothing*1e" is none of the 33 counters and was never set: 0 is taken, for site11.example -> correct the formula; vantrel-inspect preview --with shows what it gives
    field 9, character 12: "1e" is no number; what stands behind is not read, for 11 trades -> correct the formula; vantrel-inspect preview --with shows what it gives
    field 9, character 14: a ")" is missing: all since its "(" counts as 1, for 11 trades -> correct the formula; vantrel-inspect preview --with shows what it gives
    the formula ranks
    field 9, character 1: a number, a name or "(" is expected where "*1+a+b+c+d" stands; 1 is taken, for 11 trades -> correct the formula; vantrel-inspect preview --with shows what it gives
    field 9, character 4: "a+b+c+d" is none of the 33 counters and was never set: 0 is taken, for site11.example -> correct the formula; vantrel-inspect preview --with shows what it gives
    field 9, character 6: "b+c+d" is none of the 33 counters and was never set: 0 is taken, for site11.example -> correct the formula; vantrel-inspect preview --with shows what it gives
    field 9, character 302: a ")" is missing: all since its "(" counts as 1, for 11 trades -> correct the formula; vantrel-inspect preview --with shows what it gives
    $ cp d/out.mod ..; printf '|1|1|1|3|2|1|1||||' >d/out.mod; says d/out.set x; cp ../out.mod d; says d/out.set '' '1|0|\n2|-1|\n3||' '1|1|\n2|0|\n3|-1|\n4|x|\n5|y|\n' '1|5|\r\n2|4|\n3|3' '1|5|\n2|4|3|3|\n' '|5|\n6'
    holds no weight above 0: no trade gets a first weight -> save the outgoing settings again in the administration
    holds no weight above 0: no trade gets a first weight -> save the outgoing settings again in the administration
    line 2, piece 4: weight 2: "0" is not above 0; line 3, piece 6: weight 3: "-1" is not above 0; line 4, piece 8: weight 4: "x" is no number; and 1 more -> save the outgoing settings again in the administration
    3 weights
    line 2, piece 5: "3" stands where a line begins: a piece was lost or added, and names are read as weights -> save the outgoing settings again in the administration
    line 1, piece 3: an odd number of pieces: "?6" has no weight -> save the outgoing settings again in the administration
    $ says d/caps '' '|11|1|20|\n|11|2|-1|\n|11|3|0|\n' '|11|0|-1|\n|11|4|1|\n|x|1|1|\n' '|0|1|+5|\n|19|1| 7 |\n|12|1|007|\n|12|1|-0|\n|012|1|-2|\n' '|11|1||\n|20|1|-|\n|11|1|2147483648|\n|11|1|5|' '|11|1|2147483647|\n|11|1|-2147483648|\n|11|1|-2147483649|\n|11|1|00|\n|11|1|1x|\n|11|1|%071d|' 'x|11|1|5|\n' '|11|1|5|\n|11'
    0 caps
    3 caps
    line 1, piece 3: there is no kind of cap "0"; line 2, piece 7: there is no kind of cap "4"; line 3, piece 10: there is no trade with the id "x" -> save the caps again in the administration
    line 5, piece 20: the cap "-2" is below -1 -> save the caps again in the administration
    line 1, piece 4: the cap "" is no number; line 2, piece 8: the cap "-" is no number; line 3, piece 12: the cap "2147483648" is no number -> save the caps again in the administration
    line 2, piece 8: the cap "-2147483648" is below -1; line 3, piece 12: the cap "-2147483649" is no number; line 5, piece 20: the cap "1x" is no number -> save the caps again in the administration
    line 1, piece 1: "x" stands where a cap begins: a piece was lost or added just before it, and all behind is shifted -> save the caps again in the administration
    line 1, piece 5: the last cap is cut short: "?|11" -> save the caps again in the administration
    $ says d/nm/track '' '7' '|7' '|7|' '| 7 |x' '|7x|' '||' '|+|' '|-00|' '|- 5|' '|-2147483648|' '|4294967297|' "|$(printf 'x%.0s' {1..70})|" "|$(printf 'x%.0s' {1..71})|" '\0\0'
    holds no number between two bars: 1 is used, the text is "" -> write |1| or the number of the tracking setting into it
    holds no number between two bars: 1 is used, the text is "7" -> write |1| or the number of the tracking setting into it
    a number
    a number
    a number
    "7x" is no number and counts as 7 -> write |1| or the number of the tracking setting into it
    "" is no number and counts as 0 -> write |1| or the number of the tracking setting into it
    "+" is no number and counts as 0 -> write |1| or the number of the tracking setting into it
    a number
    "- 5" is no number and counts as 0 -> write |1| or the number of the tracking setting into it
    a number
    "4294967297" is no number and counts as 1 -> write |1| or the number of the tracking setting into it
    "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx" is no number and counts as 0 -> write |1| or the number of the tracking setting into it
    "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx..." is no number and counts as 0 -> write |1| or the number of the tracking setting into it
    2 NUL bytes, the first is byte 1: not as it was written -> save it anew in the administration, or put a copy back; a power cut does this
    $ says d/alerts '' '|0|a|b|0|0|0|0|0|0|0|0|0|0|' '|./send.mail|a@b.cd|a@b.c|0|0|0|0|0|0|0|0|0|0|0|' '|./sendmail|a@b.cd|a@b.cd|0|0|0|0|0|0|0|0|0|0|0|'
    There are 0 pieces instead of 14. The alert settings do not have exactly 14 fields; no alert is sent. -> Save the alert settings again in the administration.
    There are 13 pieces instead of 14. The alert settings do not have exactly 14 fields; no alert is sent. -> Save the alert settings again in the administration.
    no alert is sent: the path of the mail program ("./send.mail") has fewer than eleven characters, or an address is none -> correct the alert settings in the administration
    no alert is sent: the path of the mail program ("./sendmail") has fewer than eleven characters, or an address is none -> correct the alert settings in the administration
    $ alerts() { says d/alerts "|$1|vantrel@host.example|webmaster@host.example|0|$2|"; }
    $ alerts 0 '1|0|1|0|1|0|1|0|1|0'; alerts short '1|0|1|0|1|0|1|0|1|0'; alerts ./mail/nothing '1|0|1|0|1|0|1|0|1|0'; alerts './mail/sendmail.sh -v; x' '1|0|1|0|1|0|1|0|1|0'
    no mail program is set: no alert is sent
    alerts can be sent
    no alert is sent: the path of the mail program ("short") has fewer than eleven characters, or an address is none -> correct the alert settings in the administration
    the mail program cannot be executed: ./mail/nothing; an alert counts as sent all the same and is lost without a line -> check the path of the mail program in the alert settings
    the shell that starts the mail program gives "; x" a meaning of its own -> leave the path of the program only; options may follow it
    $ for t in '1|0|4294967294|0|1|0|1|0|1|0' '0|0|-1|1|0|0|5|1|2147483647|0' '0|0|5|0|0|0|5|0|2147483647|0' '0|0|4294967295|0|0|0|4294967295|0|2147483647|0' '1|1|x|1|1|1|1|1|1|2' '1|0|2147483648|0|1|1|1|1|2147483647|1' '0|0|2|1|3|1|4|1|5|1' '0|1|2|1|3|1|4|1|2147483646|0' '1|0|2147483647|0|1|0|2147483647|0|2147483646|0'; do alerts ./mail/sendmail.sh "$t"; done
    "4294967294" is no number, the threshold "4294967294" is below 0 -> correct the alert settings in the administration
    the threshold "-1" is below 0 -> correct the alert settings in the administration
    no alert is left that could be sent: 2 of five were -> set the flags of the sent ones back in the administration, or the thresholds
    never fires: "One of your trades has grown to 2147483647 unique hits per day" -> correct the alert settings in the administration
    "4294967295" is no number, the threshold "4294967295" is below 0, "4294967295" is no number and 1 more -> correct the alert settings in the administration
    none of the five alerts can fire -> set the flags of the sent ones back in the administration, or the thresholds
    "x" is no number, the flag "2" counts as sent -> correct the alert settings in the administration
    no alert is left that could be sent: 5 of five were -> set the flags of the sent ones back in the administration, or the thresholds
    "2147483648" is no number, the threshold "2147483648" is below 0 -> correct the alert settings in the administration
    no alert is left that could be sent: 4 of five were -> set the flags of the sent ones back in the administration, or the thresholds
    alerts can be sent
    alerts can be sent

The trades and their windows.

    $ fresh; id() { printf "\\x$(printf %02x $2)" | dd of=d/t/index bs=1 seek=$((996 * $1)) conv=notrunc status=none; }
    $ set-trade.py . 10 mode=7 url=none; set-trade.py . 11 mode=0 forced=0 skim=-1 guarantee=0 hours=-1 quota=0 override=0 measure=1 threshold=-1 below=-1 above=-1
    $ set-trade.py . 12 mode=2 forced=2 skim=100 override=1 measure=5 threshold=1 below=10000 above=10000; told trades
    $ set-trade.py . 13 mode=-1 forced=-1 skim=-2 guarantee=-1 hours=-2 quota=-1 override=-1 measure=0 threshold=-2 below=-2 above=5
    $ set-trade.py . 14 mode=3 forced=3 skim=101 override=2 measure=6 threshold=0 below=10001 above=5 url=://; set-trade.py . 15 threshold=5 below=5 above=10001 url=http:/
    $ set-trade.py . 16 threshold=0 below=0 above=1; set-trade.py . 17 threshold=1 below=0 above=1; told trades
    scoring mode is none of 0, 1 and 2: no ratio is checked: site13.example (-1), site14.example (3) -> correct the trade in the administration
    forced listing is none of 0, 1 and 2: site13.example (-1), site14.example (3) -> correct the trade in the administration
    skim is not from -1 to 100: site13.example (-2), site14.example (101) -> correct the trade in the administration
    the guarantee is below 0: site13.example (-1) -> correct the trade in the administration
    the hours of the quota are below -1 and switch it off: site13.example (-2) -> correct the trade in the administration
    a quota of an hour is below 0: site13.example (-1) -> correct the trade in the administration
    whether a quota overrides the minimum is neither 0 nor 1: site13.example (-1), site14.example (2) -> correct the trade in the administration
    the measure of the boost is none of 1 to 5: site13.example (0), site14.example (6) -> correct the trade in the administration
    the threshold of the boost is below -1: site13.example (-2) -> correct the trade in the administration
    a percentage of the boost is not from -1 to 10,000: site13.example (-2), site14.example (10001), site15.example (10001) -> correct the trade in the administration
    a boost needs its threshold and both percentages above 0 to work: site13.example (-2), site14.example (0), site16.example (0) and 1 more -> correct the trade in the administration
    the address visitors are sent to has no "://": site15.example ("http:/") -> correct the trade in the administration
    $ fresh; mkdir d/h/a; set-trade.py . 11 name=$(printf 'a%.0s' {1..49}) url=://$(printf 'a%.0s' {1..98}); set-trade.py . 12 name=$(printf 'b%.0s' {1..50}) url=://$(printf 'b%.0s' {1..99})
    $ told d/t/index | tail -n 3; set-trade.py . 13 name=a/b url=; set-trade.py . 14 'name=a|b'; set-trade.py . 15 'name=a b'; set-trade.py . 16 name=@A; set-trade.py . 17 name=Z[; set-trade.py . 18 name=
    addresses longer than 101 characters are cut in d/out.lst: bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb -> correct the trade in the administration
    names longer than 49 characters are cut in d/out.lst: bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb -> correct the trade in the administration
    $ for n in 19 20 21 22; do set-trade.py . $n name=gallery url=x; done; told d/t/index; told trades
    entries without a name get every hit whose name is empty: id 18 -> correct the trade in the administration
    only the first entry of a name is credited with its hits: gallery, gallery, gallery and 1 more -> correct the trade in the administration
    hits are matched in lower case and never reach a name with capitals: @A, Z[ -> correct the trade in the administration
    a name with a slash has no history: a/b -> correct the trade in the administration
    no hit can have a name with bars, blanks or control characters: a|b, a b -> correct the trade in the administration
    addresses longer than 101 characters are cut in d/out.lst: bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb -> correct the trade in the administration
    names longer than 49 characters are cut in d/out.lst: bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb -> correct the trade in the administration
    visitors are sent to an empty address: a/b -> correct the trade in the administration
    the address visitors are sent to has no "://": a/b (""), gallery ("x"), gallery ("x") and 2 more -> correct the trade in the administration
    $ fresh; id 15 10; id 16 17; told d/t/index; id 9 8; told d/t/index
    entries share an id and with it their statistics: 10, 17 -> correct the trade in the administration
    a trade with an id that is not above 10 is no trade to the run: position 15 with id 10 -> correct the trade in the administration
    the reserved entries are not in their places: position 9 holds id 8; what is collected for one goes to another -> tar xzf d/backup/26-320-11.tar.gz d/t/index
    entries share an id and with it their statistics: 8, 10, 17 -> correct the trade in the administration
    a trade with an id that is not above 10 is no trade to the run: position 15 with id 10 -> correct the trade in the administration
    $ for size in 9959 9960 10956 11952 11953; do fresh; truncate -s $size d/t/index; told d/t/index; done
    holds 10 entries: not even the reserved ones are all there -> tar xzf d/backup/26-320-11.tar.gz d/t/index, before a run: what comes in meanwhile is counted as unknown
    holds 10 entries: not even the reserved ones are all there -> tar xzf d/backup/26-320-11.tar.gz d/t/index, before a run: what comes in meanwhile is counted as unknown
    holds the reserved entries only: there is no trade -> tar xzf d/backup/26-320-11.tar.gz d/t/index, before a run: what comes in meanwhile is counted as unknown
    12 entries, reserved ones included
    its length is no multiple of 996: the last entry is cut short -> tar xzf d/backup/26-320-11.tar.gz d/t/index
    $ whole() { vantrel-inspect check "$@" | grep -v 'looked at'; }
    $ fresh; whole --verbose; truncate -s 8964 d/t/index; whole; : >d/t/index; truncate -s 22908 d/t/index; whole
    ok: scheduler: the last run was let in at 2026-11-16 13:07
    ok: l/sys/cron.run: no gap, no double run
    ok: disk: takes data
    ok: d/t/index: 23 entries, reserved ones included
    ok: d/t/sum: 23 lines
    ok: l/in: 4 logs
    ok: l/out: 4 logs
    ok: d/t: 23 statistics files
    ok: d/h: every trade has its days
    ok: d/jb: is there
    ok: d/ds: 2 conditions
    ok: d/se: names counted apart
    ok: d/proxy: 40 addresses
    ok: d/traffic.set: 36 rules
    ok: d/geo.rating: 17 rated texts
    ok: d/ip.psv: 1 range covers 3964319951 addresses
    ok: d/agent.rating: 24 rated texts
    ok: d/request.rating: 4 rated texts
    ok: d/tags.rating: 4 rated texts
    ok: d/set: six lines
    ok: d/out.mod: built-in score
    ok: d/out.set: 14 weights
    ok: d/caps: 7 caps
    ok: d/nm/track: a number
    ok: d/alerts: alerts can be sent
    ok: sh_sync.cgi: can be started
    ok: sh_hta.cgi: can be started
    ok: sh_top.cgi: can be started
    ok: d/backup: the newest archive can be read
    ok: list: the next one is worth following
    The next run would reach its end. Its list is worth following, nothing is being lost.
    fatal: d/t/index: The trade database holds fewer than ten entries. -> Restore d/t/index from the newest archive in d/backup/.
    The next run would end early.
    warning: d/t/index: holds nothing but zero bytes: every trade is gone -> tar xzf d/backup/26-320-11.tar.gz d/t/index, before a run: what comes in meanwhile is counted as unknown
    warning: list: the next list is empty: no visitor is sent to a trade -> vantrel-inspect why and preview show what each trade lacks
    The next run would reach its end, but something is off. Its list is not worth following. Something is being lost.
    $ for size in 283 284 285 500 2660; do fresh; truncate -s $size d/out.lst; told d/out.lst; done; for n in 0 1 2 3; do printf '\143' | dd of=d/out.lst bs=1 seek=$((284 + 216 * n)) conv=notrunc status=none; done; told d/out.lst; rm d/out.lst; told d/out.lst
    is not whole: visitors are sent by what is left of it -> let a run write it anew, the next one does; then look at what wrote to it
    is not whole: visitors are sent by what is left of it -> let a run write it anew, the next one does; then look at what wrote to it
    lists what is no trade of d/t/index: "site20.example", "site17.example", "site14.example" and 1 more; visitors are sent there until the next run -> let a run write it anew; if it comes back, look at what wrote to it
    is not there yet: the next run writes it
    $ fresh; set-trade.py . 23 name=fresh.example; told d/t/sum; told d/out.lst; fresh; sed -i '12,13d; 15s/^/|7/' d/t/sum; told d/t/sum
    no line yet for new trades: fresh.example
    24 lines
    line 13 has 45 bars instead of 44, "|7|14|101|71|118|97|75|22|77|22|3|3|6|1275|1644|1347|2493|1736|2674|23...": all behind is read shifted; no line for 3 trades with traffic: site11.example, site12.example, site14.example start again at 0 -> stop the scheduler at once, for the next run writes the damage back; then tar xzf d/backup/26-320-11.tar.gz d/t/sum and start it again
    $ fresh; sed -i '12s/$/|/; 13s/|0|/|x|/; 14s/|$//; 15s/^|/|+/; 16s/^|/ |/; 17p; 18s/^|../|99/' d/t/sum; told d/t/sum; set-trade.py . 23 name=fresh.example; : >d/t/sum; told d/t/sum
    line 12 has 45 bars instead of 44, "|11|61|46|66|51|42|9|43|15|3|4|3|768|935|714|1444|1029|1511|1363|1148|...": all behind is read shifted; line 14 has 43 bars instead of 44, "|13|212|152|220|205|171|34|171|47|15|13|6|2659|3060|2872|5004|3518|529...": all behind is read shifted; line 16 has 44 bars instead of 44, " |15|47|30|51|47|37|10|35|15|5|2|1|592|714|644|1113|768|1189|1056|889|...": all behind is read shifted; and 3 more -> stop the scheduler at once, for the next run writes the damage back; then tar xzf d/backup/26-320-11.tar.gz d/t/sum and start it again
    no line for 18 trades with traffic: gallery, noref, marked and 15 more start again at 0 -> stop the scheduler at once, for the next run writes the damage back; then tar xzf d/backup/26-320-11.tar.gz d/t/sum and start it again
    no line yet for new trades: direct, content, toplist and 3 more
    $ slots() { python3 -c 'import struct, sys; i, n, r, o = map(int, sys.argv[1:]); open(f"d/t/{i}", "wb").write(struct.pack("<3i44x", r, 0, o) * n + bytes(56 * (1440 - n)))' "$@"; }
    $ window() { awk -F'|' -v OFS='|' -v id=$1 -v rin=$2 -v out=$3 '$2 == id { $17 = rin; $19 = out } { print }' d/t/sum >../sum; cat ../sum >d/t/sum; }
    $ fresh; for case in '0 0 0 50 50' '0 0 0 51 50' '0 0 0 50 51' '1 100 0 600 0' '1 100 0 601 0' '1 0 100 0 600' '1 0 100 0 601' '1000 10 0 13333 0' '1000 10 0 13334 0' '1000 10 0 7500 0' '1000 10 0 7499 0' '1 50000000 0 50000000 0' '1 50000001 0 50000000 0' '1 0 -1 0 0'; do
    >   set -- $case; slots 11 ${@:1:$#-2}; window 11 ${@: -2}; told d/t/sum; told d/t/11
    > done
    23 lines
    the windows of 24 hours are not the sum of the minutes in d/t/<id>: site11.example (51, the minutes make 0) -> stop the scheduler and tar xzf d/backup/26-320-11.tar.gz d/t; left alone, the windows stay wrong for ever
    the windows of 24 hours are not the sum of the minutes in d/t/<id>: site11.example (51, the minutes make 0) -> stop the scheduler and tar xzf d/backup/26-320-11.tar.gz d/t; left alone, the windows stay wrong for ever
    23 lines
    the windows of 24 hours are not the sum of the minutes in d/t/<id>: site11.example (601, the minutes make 100) -> stop the scheduler and tar xzf d/backup/26-320-11.tar.gz d/t; left alone, the windows stay wrong for ever
    23 lines
    the windows of 24 hours are not the sum of the minutes in d/t/<id>: site11.example (601, the minutes make 100) -> stop the scheduler and tar xzf d/backup/26-320-11.tar.gz d/t; left alone, the windows stay wrong for ever
    23 lines
    the windows of 24 hours are not the sum of the minutes in d/t/<id>: site11.example (13334, the minutes make 10000) -> stop the scheduler and tar xzf d/backup/26-320-11.tar.gz d/t; left alone, the windows stay wrong for ever
    23 lines
    the windows of 24 hours are not the sum of the minutes in d/t/<id>: site11.example (7499, the minutes make 10000) -> stop the scheduler and tar xzf d/backup/26-320-11.tar.gz d/t; left alone, the windows stay wrong for ever
    23 lines
    23 lines
    holds counts that no minute can have: the windows turn wrong when they leave -> tar xzf d/backup/26-320-11.tar.gz d/t
    23 lines
    holds counts that no minute can have: the windows turn wrong when they leave -> tar xzf d/backup/26-320-11.tar.gz d/t
    $ for n in 12 13 14 15; do truncate -s 80641 d/t/$n; done; rm d/t/16; mkdir d/t/16; truncate -s 0 d/t/17; vantrel-inspect check | grep ^warning | cut -c1-200
    warning: d/t/sum: the windows of 24 hours are not the sum of the minutes in d/t/<id>: site16.example (833, the minutes make 0), site17.example (1668, the minutes make 0) -> stop the scheduler and tar 
    warning: d/t/16: is no file: no minute of the trade is stored -> put it away and make a file of 80,640 zero bytes
    warning: d/t/12, d/t/13, d/t/14 and 2 more: not 80,640 bytes long: minutes behind the end count as zero, so that what they held never leaves the windows -> tar xzf d/backup/26-320-11.tar.gz d/t; or ma
    warning: d/t/11: holds counts that no minute can have: the windows turn wrong when they leave -> tar xzf d/backup/26-320-11.tar.gz d/t

The days, the logs, the runs, and what they leave behind.

    $ fresh; days() { sed "$1" ../model/d/h/site11.example.his >d/h/site11.example.his; told d/h | cut -d: -f1; }
    $ for change in 3p 5d '4,6d' '1,2d' '2p;1d' '3{h;d};4G' '$d' 's/|20261113|/|20261313|/' 's/|20261113|/|2026111|/' 's/|20261115|/|20261116|/' 's/|20261115|/|20261117|/' '$s/$/\n/'; do days "$change"; done
    every trade has its days
    in 1 file (d/h/site11.example.his) 1 day between 20261110 and 20261112 missing
    in 1 file (d/h/site11.example.his) 3 days between 20261109 and 20261113 missing
    every trade has its days
    every trade has its days
    in 1 file (d/h/site11.example.his) 1 day between 20261109 and 20261111 missing
    in 1 file (d/h/site11.example.his) the days are not in order at 20261109
    in 1 file (d/h/site11.example.his) the last day is 20261114, yesterday is missing
    in 1 file (d/h/site11.example.his) a record has "20261313" where its date should be
    in 1 file (d/h/site11.example.his) a record has "2026111" where its date should be
    in 1 file (d/h/site11.example.his) 1 day between 20261114 and 20261116 missing
    in 1 file (d/h/site11.example.his) 2 days between 20261114 and 20261117 missing
    in 1 file (d/h/site11.example.his) the last day is 20261117, which is to come
    every trade has its days
    $ days '$d'; AT=00:19 told d/h | cut -d: -f1; AT=00:20 told d/h | cut -d: -f1; AT='00:19 1 day' told d/h | cut -d: -f1; AT='00:20 1 day' told d/h | cut -d: -f1
    in 1 file (d/h/site11.example.his) the last day is 20261114, yesterday is missing
    every trade has its days
    in 1 file (d/h/site11.example.his) the last day is 20261114, yesterday is missing
    in 1 file (d/h/site11.example.his) the last day is 20261114, yesterday is missing
    in 1 file (d/h/site11.example.his) the last day is 20261114, yesterday is missing
    in 24 files (d/h/direct.his, d/h/gallery.his, d/h/content.his and 21 more) the last day is 20261115, yesterday is missing
    $ for n in 11 12 13 14; do sed -i 4p d/h/site$n.example.his; done; sed -i 4d d/h/all.his; cp /dev/null d/h/site15.example.his; rm d/h/trades.his; rm d/h/site16.example.his; mkdir d/h/site16.example.his; told d/h; told d/h/trades.his; told d/h/site16.example.his
    emptied since the last run: d/h/site15.example.his; the 7-day window starts anew -> tar xzf d/backup/26-320-11.tar.gz d/h
    in 4 files (d/h/site11.example.his, d/h/site12.example.his, d/h/site13.example.his and 1 more) the day 20261110 stands there twice: the 7-day window counts the last seven records -> correct the file with an editor, or tar xzf d/backup/26-320-11.tar.gz d/h; a missed 23:59 is made up for after midnight under the new date
    in 1 file (d/h/site11.example.his) the last day is 20261114, yesterday is missing: the 7-day window counts the last seven records -> correct the file with an editor, or tar xzf d/backup/26-320-11.tar.gz d/h; a missed 23:59 is made up for after midnight under the new date
    is not there, though trades have days: a day that is missed at 23:59 is not made up for -> tar xzf d/backup/26-320-11.tar.gz d/h, or let the run of 23:59 begin a new one
    $ fresh; for at in 13:06:19 13:06:20 13:09:20 13:09:21 14:07:20 14:07:21; do AT=$at told scheduler; done; rm l/sys/cron.last; told scheduler
    the last run was let in at 2026-11-16 13:07, which is in the future -> set the machine's clock
    the last run was let in at 2026-11-16 13:07
    the last run was let in at 2026-11-16 13:07
    the last run was let in at 2026-11-16 13:07, 2 minutes ago -> see that the scheduler runs and starts vantrel-cron every minute
    the last run was let in at 2026-11-16 13:07, 60 minutes ago -> see that the scheduler runs and starts vantrel-cron every minute
    the last run was let in at 2026-11-16 13:07, 60 minutes ago; the next one counts the last 60 minutes, what came in before is lost -> see that the scheduler runs and starts vantrel-cron every minute
    no run has been let in yet -> start vantrel-cron once a minute with this directory as working directory
    $ fresh; for second in 0 20 21 59 60 -1 x; do echo $second >d/sleep; told d/sleep; done; rm l/sys/cron.last; told d/sleep; rm d/sleep
    a run started before second 20 of its minute ends silently; the last one came later
    a run started before second 21 of its minute ends silently, and the last one was let in at second 20 -> put 0 into d/sleep, or have the scheduler start the run later in the minute
    $ fresh; for stamps in '' x 'x\n11161307' '11161307\n11161308\n' '11161307\n11161309\n11171307\n11171308\n' '11161307\n11171308\n' '11161105\n11161205\n' '11161105\n11161204\n1116120\n' '11161305\n11161307\n11161306\n' '11161306\n11161306\n11161307\n' '12312358\n12312359\n01010000\n' '12010000\n11300000\n' '12312359\n02010000\n' '11302359\n01010000\n' '11161301\n11161303\n11161305\n11161307\n'; do says l/sys/cron.run "$stamps"; done
    no gap, no double run
    1 line no run wrote: "x"; the run behind one reads a single minute of logs -> take the lines out; a power cut or another program left them
    its last line has no end: the next run's note becomes a part of it -> add a line feed at the end of the file
    1 line no run wrote: "x"; the run behind one reads a single minute of logs -> take the lines out; a power cut or another program left them
    its last line has no end: the next run's note becomes a part of it -> add a line feed at the end of the file
    holds 1 stamp of minutes to come, up to 2026-11-16 13:08: a run in one of them is refused as a double one -> the clock was set back, or lines were added: take the lines from 2026-11-16 13:08 on out of l/sys/cron.run
    holds 2 stamps of minutes to come, up to 2026-11-17 13:07: a run in one of them is refused as a double one -> the clock was set back, or lines were added: take the lines from 2026-11-16 13:08 on out of l/sys/cron.run
    2 gaps in the last 4 runs, before 11161309, before 11171307; of an hour or more only 60 minutes were counted afterwards -> see vantrel-inspect runs; a reboot explains one, a busy machine many
    1 gap in the last 2 runs, before 11171308; of an hour or more only 60 minutes were counted afterwards -> see vantrel-inspect runs; a reboot explains one, a busy machine many
    1 gap in the last 2 runs, before 11161205; of an hour or more only 60 minutes were counted afterwards -> see vantrel-inspect runs; a reboot explains one, a busy machine many
    1 line no run wrote: "1116120"; the run behind one reads a single minute of logs -> take the lines out; a power cut or another program left them
    1 gap in the last 3 runs, before 11161204; the run behind it counted what had come in -> see vantrel-inspect runs; a reboot explains one, a busy machine many
    1 stamp twice or behind a later one: 11161306; as long as they are among the last 40, every run finds a gap there and synchronises -> the clock was set back, or a run was killed while it shortened the file in place: take the older lines out
    1 gap in the last 3 runs, before 11161307; the run behind it counted what had come in -> see vantrel-inspect runs; a reboot explains one, a busy machine many
    1 stamp twice or behind a later one: 11161306; as long as they are among the last 40, every run finds a gap there and synchronises -> the clock was set back, or a run was killed while it shortened the file in place: take the older lines out
    no gap, no double run
    1 stamp twice or behind a later one: 11300000; as long as they are among the last 40, every run finds a gap there and synchronises -> the clock was set back, or a run was killed while it shortened the file in place: take the older lines out
    1 stamp twice or behind a later one: 02010000; as long as they are among the last 40, every run finds a gap there and synchronises -> the clock was set back, or a run was killed while it shortened the file in place: take the older lines out
    1 stamp twice or behind a later one: 01010000; as long as they are among the last 40, every run finds a gap there and synchronises -> the clock was set back, or a run was killed while it shortened the file in place: take the older lines out
    3 gaps in the last 4 runs, before 11161303, before 11161305, before 11161307; the run behind it counted what had come in -> see vantrel-inspect runs; a reboot explains one, a busy machine many
    $ for minute in {00..59}; do echo 111612$minute; done >l/sys/cron.run; sed -i '22d;20d' l/sys/cron.run; told l/sys/cron.run; sed -i 21d l/sys/cron.run; told l/sys/cron.run; rm l/sys/cron.run; told l/sys/cron.run
    1 gap in the last 39 runs, before 11161222; the run behind it counted what had come in -> see vantrel-inspect runs; a reboot explains one, a busy machine many
    2 gaps in the last 39 runs, before 11161220, before 11161223; the run behind it counted what had come in -> see vantrel-inspect runs; a reboot explains one, a busy machine many
    is not there yet: the next run counts one minute
    $ fresh; logs() { rm -rf l/in/*; for log; do touch -d "2026-11-16 ${log#*=}" l/in/26-${log%=*}; done; told l/in; }
    $ logs 320-13-09=13:00; logs 320-13-10=13:00; logs 320-12-35=13:00; logs 320-12-36=13:00; logs 320-12-36=13:01 320-11-30=12:10 320-10-06=10:31
    1 log
    the newest log is named 26-320-13-10, a minute to come (now it is 26-320-13-07): the request scripts have another time zone or clock, nothing is counted in its minute -> give the web server and the scheduler's job the same time zone (TZ, /etc/localtime)
    the log 26-320-12-35 was written at 2026-11-16 13:00: the request scripts have another time zone than the run, nothing is counted -> give the web server and the scheduler's job the same time zone (TZ, /etc/localtime)
    1 log
    the log 26-320-12-36 was written at 2026-11-16 13:01: the request scripts have another time zone than the run, nothing is counted -> give the web server and the scheduler's job the same time zone (TZ, /etc/localtime)
    $ logs 320-12-36=13:01 320-11-30=11:54 320-13-08=10:00; logs 320-13-07=13:32 320-12-35=13:00; logs 320-13-07=10:06 320-12-36=13:02; logs 320-10-07=10:07; logs 320-10-06=10:06; logs
    3 logs
    the log 26-320-12-35 was written at 2026-11-16 13:00: the request scripts have another time zone than the run, nothing is counted -> give the web server and the scheduler's job the same time zone (TZ, /etc/localtime)
    the log 26-320-12-36 was written at 2026-11-16 13:02: the request scripts have another time zone than the run, nothing is counted -> give the web server and the scheduler's job the same time zone (TZ, /etc/localtime)
    1 log
    the newest log is 26-320-10-06, 3 hours old -> see that the request scripts run and may write l/in
    holds no log, though there was traffic within the last 24 hours -> see that the request scripts run and may write l/in
    $ logs 320-13-07=13:07 x=13:07; touch l/in/26-320-13-070 l/in/.x; told l/in; mkdir l/in/26-320-12-06; told l/in; mkdir l/in/26-320-12-07; told l/in
    1 file not named by a minute: no run reads them -> let the request scripts name logs as 26-320-13-07
    3 files not named by a minute: no run reads them -> let the request scripts name logs as 26-320-13-07
    3 files not named by a minute: no run reads them -> let the request scripts name logs as 26-320-13-07
    logs that are no files are not counted: l/in/26-320-12-07 -> remove them
    3 files not named by a minute: no run reads them -> let the request scripts name logs as 26-320-13-07
    $ logs 320-13-07=13:07; touch l/in/26-301-{00..15}-{00..59} l/in/26-301-16-{00..38} l/in/26-319-11-07; told l/in; touch l/in/26-319-11-06; told l/in
    1 file not named by a minute: no run reads them -> let the request scripts name logs as 26-320-13-07
    1 file not named by a minute: no run reads them -> let the request scripts name logs as 26-320-13-07
    1000 logs older than 25 hours: runs were missing when they were to be removed, and no later one looks for them -> find l/in -type f -mmin +1600 -delete
    1 file not named by a minute: no run reads them -> let the request scripts name logs as 26-320-13-07
    $ fresh; sed -i 's/|[1-9][0-9]*/|0/2g' d/t/sum; logs; logs 320-10-06=10:06; rm d/h/all.his; told d/h/all.his; rm -r l/out; told l/out; touch l/out; told l/out; told l
    0 logs
    the newest log is 26-320-10-06, 3 hours old -> see that the request scripts run and may write l/in
    the folder is not there. Nothing is counted -> make the folder, or get it back: tar xzf d/backup/26-320-11.tar.gz l/out
    is no folder. Nothing is counted -> put it away; make the folder, or tar xzf d/backup/26-320-11.tar.gz l/out
    $ fresh; for at in '00:59 1 day' '00:59:01 1 day' '12:59:01 6 days'; do touch -d '2026-11-16 11:59' d/backup/26*; AT=$at told d/backup; done; touch -d '2026-11-16 11:58' d/backup/26-320-12.tar.gz; told d/backup; touch -d '2026-11-16 12:01' d/backup/26-320-12.tar.gz; told d/backup; echo x >d/backup/z; told d/backup
    the newest archive can be read
    the newest archive, d/backup/26-320-11.tar.gz, is 13 hours old; one is due at 11:59 and 23:59 -> look at what tar says: cd into the site and do what the run does, tar zcf d/backup/by-hand.tar.gz d/t d/gr d/h d/tpl d/css
    the newest archive, d/backup/26-320-11.tar.gz, is 6 days old; one is due at 11:59 and 23:59 -> look at what tar says: cd into the site and do what the run does, tar zcf d/backup/by-hand.tar.gz d/t d/gr d/h d/tpl d/css
    the newest archive can be read
    the newest archive, d/backup/26-320-12.tar.gz, is empty -> look at what tar says: cd into the site and do what the run does, tar zcf d/backup/by-hand.tar.gz d/t d/gr d/h d/tpl d/css
    the newest archive, d/backup/z, cannot be read by tar -> look at what tar says: cd into the site and do what the run does, tar zcf d/backup/by-hand.tar.gz d/t d/gr d/h d/tpl d/css
    $ rm -r d/gr d/css d/backup/*; told d/backup; : >d/h/all.his; told d/backup; rm -r d/backup; touch d/backup; told d/backup
    folders that the archive is to hold are missing: d/gr, d/css; tar says so on the standard error of the run at 11:59 and 23:59 -> make the folders
    holds no archive, though the site has lived for a day -> look at what tar says: cd into the site and do what the run does, tar zcf d/backup/by-hand.tar.gz d/t d/gr d/h d/tpl d/css
    folders that the archive is to hold are missing: d/gr, d/css; tar says so on the standard error of the run at 11:59 and 23:59 -> make the folders
    holds no archive yet; the first is made at 11:59 or 23:59
    no backup is kept: the directory cannot be used -> make the directory, readable and writable for the run's user
    $ says sh_top.cgi '' '#!' '#! \n' 'text\n' '#!/bin/sh' '#! /bin/sh -e\n' '#!/bin/sh\r\n' '#!/no/sh -x\n' '#!/usr/bin/env sh\n' '#!/usr/bin/env -S no-such-shell\n' '#!/usr/bin/env no-such-shell x\n'
    the companion script is empty: it does nothing -> put it back and make it executable for the run's user
    can be started
    can be started
    can be started
    can be started
    can be started
    its first line ends with a carriage return, as files from Windows do: there is no interpreter "/bin/sh?"; what the shell says of it goes to the standard error of the run, which schedulers mail -> install it, or correct the first line of the script
    its interpreter "/no/sh" is missing or cannot be executed; what the shell says of it goes to the standard error of the run, which schedulers mail -> install it, or correct the first line of the script
    can be started
    can be started
    its interpreter "no-such-shell" is not on the path; what the shell says of it goes to the standard error of the run, which schedulers mail -> install it, or correct the first line of the script
    $ PATH=/nowhere "$(command -v vantrel-inspect)" check | grep -E ': (tar|gzip): '; env -u PATH "$(command -v vantrel-inspect)" check | grep -cE ': (tar|gzip): '
    warning: tar: is not on the path: no backup is made; what the shell says of it goes to the standard error of the run, which schedulers mail -> install tar with gzip support
    warning: gzip: is not on the path: no backup is made; what the shell says of it goes to the standard error of the run, which schedulers mail -> install tar with gzip support
    0
    [1]
    $ rm sh_top.cgi; told sh_top.cgi; mkdir sh_top.cgi; told sh_top.cgi
    the companion script is missing; what the shell says of it goes to the standard error of the run, which schedulers mail -> put it back and make it executable for the run's user
    is no file; what the shell says of it goes to the standard error of the run, which schedulers mail -> put it back and make it executable for the run's user
    $ fresh; truncate -s 64M l/sys/sys.log; told l/sys/sys.log; echo >>l/sys/sys.log; told l/sys/sys.log
    64 MiB long -> have it rotated; an example comes with the program
    $ event() { printf "|20261116$1|$2|1|$3|$4||||\n"; }
    $ { event 1206 cron gone 1; event 1207 cron d/set 1; event 1301 cron 'd&#47;t&#47;index' 1; event 1302 cron 'd&#47;t&#47;index' 1; event 1303 admin x 1; event 1304 cron 'd&#47;ds' 0; event 1305 cron 'd&#47;t&#47;12' 1; } >l/sys/sys.log; told events
    1 run ended early in the last hour: d/set; what came in in their minutes is not counted; the last early end was at 2026-11-16 13:05 -> see vantrel-inspect events for what each means
    1 run ended early in the last hour: d/t/12; what came in in their minutes is not counted; the last early end was at 2026-11-16 13:05 -> see vantrel-inspect events for what each means
    2 runs ended early in the last hour: d/t/index; the last early end was at 2026-11-16 13:05 -> see vantrel-inspect events for what each means
    $ printf '#!/bin/bash\nsleep 9\n:' >vantrel-cron; chmod 755 vantrel-cron; for i in 1 2; do ./vantrel-cron >../x & sleep 0.5; told processes | wc -l; done; told processes | sed 's/for [0-9] seconds\?/for SECONDS/'
    0
    1
    2 runs of this site at work, the oldest for SECONDS, waiting for sleep, sleep -> a companion script, tar or the mail program does not end, or the disk is slow: look at it (ps), end it and mend it; the runs lose nothing by it
    $ kill $(jobs -p); wait; (cd d; ../vantrel-cron >../../x) & ./vantrel-cron >../x & sleep 0.5; told processes; kill $(jobs -p)

Whether the next list is worth following.

    $ fresh; for weights in '1|90|\n2|10|\n' '1|91|\n2|9|\n' '1|0|\n2|9|\n' '1|0|\n'; do printf "$weights" >d/out.set; told list; done
    the next one is worth following
    site20.example has 91 % of the weights of the next list -> vantrel-inspect why and preview show what each trade lacks
    site17.example has 100 % of the weights of the next list -> vantrel-inspect why and preview show what each trade lacks
    $ fresh; printf '1|5|\n' >d/out.set; for n in 11 12 13 14 15 16 17 18; do set-trade.py . $n mode=0; done; told list
    site20.example has 100 % of the weights of the next list -> vantrel-inspect why and preview show what each trade lacks
    $ vantrel-inspect list | wc -l; for n in {19..22}; do set-trade.py . $n mode=0; [ $n = 21 ] || told list; done
    13
    site20.example has 100 % of the weights of the next list -> vantrel-inspect why and preview show what each trade lacks
    the next list has 4 trades, the present one 11 -> vantrel-inspect why and preview show what each trade lacks
    in the next list all weights are 0: no visitor is sent to a trade -> vantrel-inspect why and preview show what each trade lacks
