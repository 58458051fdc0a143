What the views print of an odd site, to the letter: of each kind the first, the last and what is just
outside. Where that is to change: see views.t.

Trades of which each stands where it does for another reason.

    $ vantrel-sample-site site --trades 25 --hits 1 --days 9 --minutes 4 >/dev/null; cd site; vantrel-cron; find . -exec touch -h -d '2026-11-16 13:07:20' {} +
    $ traffic() { python3 -c 'import sys
    > names = "rin uin out clk ctt ctg cef rec proxy_in proxy_out proxy_clk rti rto rtc".split()
    > lines = [line.split("|") for line in open("d/t/sum")]
    > for line in lines:
    >     if line[1] == sys.argv[1]:
    >         line[2:44] = ["0"] * 42
    >         for name, value in (setting.split("=") for setting in sys.argv[2:]):
    >             line[2 + 14 * ["60", "24", "07"].index(name[-2:]) + names.index(name[:-2])] = value
    > open("d/t/sum", "w").write("".join("|".join(line) for line in lines))' "$@"; }
    $ plain="mode=1 forced=0 skim=-1 guarantee=0 hours=0 quota=0 override=0 measure=1 threshold=-1 below=-1 above=-1"
    $ printf '|13|1|50|\n|14|3|50|\n|16|2|50|\n' >d/caps; sed -i '6s/.*/|10|/' d/set; printf '1|1500|\n2|900|\n3|600.5|\n4|-4|\n5|0|\n6|200|\n' >d/out.set; : >d/ds
    $ while read -r id settings counts; do set-trade.py . $id $plain ${settings//,/ }; traffic $id ${counts//,/ }; done <<'END'
    > 11 mode=1 rin24=100,uin24=99,out24=181
    > 12 mode=2,guarantee=1,override=1 rin24=5,out24=5
    > 13 mode=2 rin24=100,uin24=100,cef24=49,out24=100
    > 14 mode=2 rin24=100,uin24=100,out24=101
    > 15 mode=2 rin24=12,uin24=12
    > 16 mode=2 rin24=10,uin24=10,out24=7,ctt24=3
    > 17 mode=1 rin24=20,uin24=20,out24=20,rtc24=1
    > 18 mode=1 rin24=20,uin24=20,out24=20,rto24=9,rtc60=1
    > 19 mode=1 rin24=1,uin24=10,rti24=1,out24=1
    > 20 mode=1 rin24=20,uin24=20,uin60=7,rti60=1,out24=3,rto24=2
    > 21 mode=1 rin24=12,uin24=11,out24=2
    > 22 mode=1 rin24=20,uin24=12,out24=2,rti07=5,rtc24=-1
    > 23 mode=1,measure=5,threshold=10,below=50,above=200 rin24=200,uin24=20,cef24=21,out24=80,out60=1,rti24=7,rto24=6,rtc24=5
    > 24 mode=1 rin24=200,uin24=20,out24=80,out60=2,rti24=7,rto24=6,rtc24=5,rti60=1,rto60=-1,rtc60=1
    > 25 mode=1 rin24=20,uin24=9
    > 26 mode=1,guarantee=1 uin24=9
    > 27 mode=1,hours=-1,quota=1 rin24=20
    > 28 mode=1,hours=1,forced=1 rin24=20
    > 29 mode=1,hours=1,quota=3,override=1 rin24=20,out60=2
    > 30 mode=3,hours=1,forced=2,override=1,skim=0 rin24=20
    > 31 mode=3,hours=1,quota=3,guarantee=3 rin24=20,uin24=10,out60=3,out24=3
    > 32 mode=0,skim=30,hours=-1,quota=3 rin24=20
    > 33 mode=1,measure=2,threshold=4,below=100,above=1 rin24=20,uin24=20,out24=3,rti24=7,rto24=1,rtc24=5,rti60=1,rtc60=1,rto60=1
    > 34 mode=-1,measure=3,threshold=1,below=7,above=1 rin24=20,uin24=2000,out24=3,rto24=5
    > 35 mode=1 rin24=20,uin24=2000,out24=3,rto24=5,rtc24=6,rti24=7
    > END
    $ vantrel-inspect why --all
    id  name            why
    17  site17.example  Rank 1 of 36: its visitors clicked in the last 24 hours and nothing of quality was sent back, which lifts its score to 300; it has weight 1500.
    18  site18.example  Rank 2 of 36: its visitors clicked in the last hour and nothing of quality was sent back in it, which lifts its score to 300; it has weight 900.
    33  site33.example  Rank 3 of 36: its visitors' return quality is 244.85, its own boost makes 100 % of it; it has weight 600.
    19  site19.example  Rank 4 of 36: it sent visitors in the last 24 hours and got nothing of quality back, which lifts its score to 200.1; it has weight -4.
    20  site20.example  Rank 5 of 36: it sent visitors in the last hour and got nothing of quality back in it, which lifts its score to 200.07; it has no weight and is not listed.
    21  site21.example  Rank 6 of 36: it is new and got at most 2 clicks, which lifts its score to 150; it has weight 200.
    25  site25.example  Rank 7 of 36: it sent 9 unique hits in 24 hours, the minimum on line 6 of d/set is 10; it has no weight and is not listed.
    26  site26.example  Rank 8 of 36: it sent 9 unique hits in 24 hours, the minimum on line 6 of d/set is 10; its guarantee does not count below the minimum, unless it is set to override it; it has no weight and is not listed.
    23  site23.example  Rank 9 of 36: its visitors' return quality is 38.71, its own boost makes 200 % of it; the weights had all gone to better ranks, it has second weight 784.
    35  site35.example  Rank 10 of 36: its visitors' return quality is 46.38; the weights had all gone to better ranks, it has second weight 729.
     0  direct          Rank 11 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
     1  gallery         Rank 12 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
     2  content         Rank 13 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
     3  noref           Rank 14 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
     4  marked          Rank 15 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
     5  nocookie        Rank 16 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
     6  unknown         Rank 17 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
     7  toplist         Rank 18 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
     8  search          Rank 19 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
     9  misc            Rank 20 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
    10  spare           Rank 21 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
    22  site22.example  Rank 22 of 36: no window has all three qualities, so its score is 0; the weights had all gone to better ranks, it has second weight 225.
    27  site27.example  Rank 23 of 36: it sent 0 unique hits in 24 hours, the minimum on line 6 of d/set is 10; its quota does not count below the minimum, unless it is set to override it; it has no weight and is not listed.
    28  site28.example  Rank 24 of 36: it sent 0 unique hits in 24 hours, the minimum on line 6 of d/set is 10; its forced listing does not count below the minimum, unless it is set to override it; it has no weight and is not listed.
    29  site29.example  Rank 25 of 36: no window has all three qualities, so its score is 0; its quota lets it in below the minimum; the weights had all gone to better ranks, it has second weight 144.
    30  site30.example  Rank 26 of 36: no window has all three qualities, so its score is 0; its forced listing lets it in below the minimum; the weights had all gone to better ranks, it has second weight 121.
    31  site31.example  Rank 27 of 36: no window has all three qualities, so its score is 0; the weights had all gone to better ranks, it has second weight 100.
    32  site32.example  Rank 28 of 36: mode 0 keeps it from weights; it has no weight.
    34  site34.example  Rank 29 of 36: no window has all three qualities, so its score is 0; the weights had all gone to better ranks, it has second weight 64.
    11  site11.example  Rank 30 of 36: mode 1 stopped it, it got 181 % of what it sent at 99 unique hits a day; the limit there is 180 %; the weights had all gone to better ranks, it has second weight 49.
    12  site12.example  Rank 31 of 36: mode 2 stopped it, it sent no unique hit in 24 hours; its guarantee lets it in below the minimum; the weights had all gone to better ranks, it has second weight 36.
    14  site14.example  Rank 32 of 36: its cap stopped it, it got 101 % of its unique hits; the most allowed is 50 %; the weights had all gone to better ranks, it has second weight 25.
    13  site13.example  Rank 33 of 36: its cap stopped it, cef is 49 % of its unique hits; the least allowed is 50 %; the weights had all gone to better ranks, it has second weight 16.
    15  site15.example  Rank 34 of 36: mode 2 stopped it, nothing was sent to it in 24 hours, so its clicks cannot be judged; another mode or a quota sends it some; the weights had all gone to better ranks, it has second weight 9.
    16  site16.example  Rank 35 of 36: its cap stopped it, ctt is 42.86 % of the clicks sent to it; the least allowed is 50 %; the weights had all gone to better ranks, it has second weight 4.
    24  site24.example  Rank 36 of 36: its visitors' return quality is -27.37; the weights had all gone to better ranks, it has second weight 1.
    $ vantrel-inspect preview
    The next outgoing list, for hour 13: 23 changes
    id  name            rank  new  weight    new   share     new  change   reason
    17  site17.example     -    1       -   1500       -  46.88%  enters   earned, got none
    18  site18.example     -    2       -    900       -  28.13%  enters   earned, got none
    33  site33.example     -    3       -    600       -  18.75%  enters   boost 100%
    19  site19.example     -    4       -     -4       -      0%  enters   sends, got none
    21  site21.example     -    5       -    200       -   6.25%  enters   newcomer
    23  site23.example     -    6       -  (784)       -      0%  enters   boost 200%
    35  site35.example     -    7       -  (729)       -      0%  enters   return quality
    22  site22.example     -    8       -  (225)       -      0%  enters   no return quality
    29  site29.example     -    9       -  (144)       -      0%  enters   quota
    30  site30.example     -   10       -  (121)       -      0%  enters   forced
    31  site31.example     -   11       -  (100)       -      0%  enters   no return quality
    32  site32.example     -   12       -      0       -      0%  enters   mode 0
    34  site34.example     -   13       -   (64)       -      0%  enters   no return quality
    11  site11.example     -   14       -   (49)       -      0%  enters   mode 1: 181% > 180%
    12  site12.example     1   15     600   (36)   60.3%      0%  changes  guarantee
    14  site14.example     -   16       -   (25)       -      0%  enters   cap out: 101% > 50%
    13  site13.example     -   17       -   (16)       -      0%  enters   cap cef: 49% < 50%
    15  site15.example     -   18       -    (9)       -      0%  enters   mode 2: nothing sent
    16  site16.example     2   19     300    (4)  30.15%      0%  changes  cap ctt: 42.86% < 50%
    24  site24.example     -   20       -    (1)       -      0%  enters   return quality
    20  site20.example     3    -      75      -   7.54%       -  leaves   sends, got none
    26  site26.example     4    -      20      -   2.01%       -  leaves   below minimum
    28  site28.example     5    -     (4)      -      0%       -  leaves   below minimum
    $ vantrel-inspect preview --changed --hour 0 | head -n 9
    The next outgoing list, for hour 0: 23 changes
    id  name            rank  new  weight    new   share     new  change   reason
    12  site12.example     1   15     600   (36)   60.3%      0%  changes  guarantee
    17  site17.example     -    1       -   1500       -  46.88%  enters   earned, got none
    16  site16.example     2   19     300    (4)  30.15%      0%  changes  cap ctt: 42.86% < 50%
    18  site18.example     -    2       -    900       -  28.13%  enters   earned, got none
    33  site33.example     -    3       -    600       -  18.75%  enters   boost 100%
    20  site20.example     3    -      75      -   7.54%       -  leaves   sends, got none
    21  site21.example     -    5       -    200       -   6.25%  enters   newcomer
    $ for id in 13 20 23; do echo "$id:"; vantrel-inspect why $id | sed -n '3,/  rank among/p' | grep -v 'weight of this\|visitors it sent\|clicks sent to it\|visitors. clicks$'; done
    13:
    -5  score, built in
      0  mean of the three windows by their weights
        0  return quality of the last 60 minutes
          rti and rto and rtc  are 0, so this window counts as 0
        0  return quality of the last 24 hours
          rti and rto and rtc  are 0, so this window counts as 0
        0  return quality of the last 7 days
          rti and rto and rtc  are 0, so this window counts as 0
      0  times 1.25: it got little in the last hour
        0  out in the last 60 minutes
        2  out in 24 hours / 40, without its fraction
      -5  mode 2: failed, the score is a code
        49  percent measured
        50  percent is the limit
        50  least cef per uin in percent, -1 for none
        -1  most out per uin in percent, -1 for none
        -1  least ctt per out in percent, -1 for none
      -5  not lifted
      -5  no boost of its own
    33  rank among all 36 entries of the index, reserved ones included
    20:
    200.07  score, built in
      0  mean of the three windows by their weights
        0  return quality of the last 60 minutes
          rto and rtc  are 0, so this window counts as 0
        0  return quality of the last 24 hours
          rti and rtc  are 0, so this window counts as 0
        0  return quality of the last 7 days
          rti and rto and rtc  are 0, so this window counts as 0
      0  no boost for fresh traffic
        0  out in the last 60 minutes
        0  out in 24 hours / 40, without its fraction
      0  mode 1: passed
        15  percent: out of rin in 24 hours
        180  percent is the limit
        20  unique hits in 24 hours
      200.07  lifted to 200 + uin / 100: rti of 60 minutes is above 0, rto is 0
      200.07  no boost of its own
    5  rank among all 36 entries of the index, reserved ones included
    23:
    77.41746032  score, built in
      30.96698413  mean of the three windows by their weights
        0  return quality of the last 60 minutes
          rti and rto and rtc  are 0, so this window counts as 0
        92.90095238  return quality of the last 24 hours: (2 p + p (0.5 q + 1)) / 3
          83  p: rtc as a percentage of rto
          0.7142857143  q: rtc / rti
          0.02  added: uin / 1000
        0  return quality of the last 7 days
          rti and rto and rtc  are 0, so this window counts as 0
      38.70873016  times 1.25: it got little in the last hour
        1  out in the last 60 minutes
        2  out in 24 hours / 40, without its fraction
      38.70873016  mode 1: passed
        40  percent: out of rin in 24 hours
        180  percent is the limit
        20  unique hits in 24 hours
      38.70873016  not lifted
      77.41746032  boost of its own: 200 percent
        10  cef per rin in percent in 24 hours
        10  is the threshold
        50  percent below it
        200  percent from it on
    9  rank among all 36 entries of the index, reserved ones included
    $ for id in 32 30; do vantrel-inspect why $id | sed -n '/admitted/,/its own skim/p'; done
    false  not admitted: mode 0
      0  unique hits in 24 hours
        10  is the least, on line 6 of d/set
      3  quota of hour 13: open
        0  clicks sent in the last 60 minutes
        -1  hours it is in force, -1 for ever
      0  guaranteed clicks left: not open
      0  forced listing: not in force
      false  a quota, guarantee or forced listing overrides the least
      0  mode; 0 keeps it out
    0  no weight: not admitted
    true  listed: both conditions hold
      true  plays a part: has a weight in a mode other than 0, or a skim
      true  moves traffic: hits in 24 hours, a quota of this hour or a guarantee
      true  is a trade: id above 9
    normal  state in the list
    30  skim
      30  its own skim, -1 for none
    true  admitted by its claim
      0  unique hits in 24 hours
        10  is the least, on line 6 of d/set
      0  quota of hour 13: not open
        0  clicks sent in the last 60 minutes
        1  hours it is in force, -1 for ever
      0  guaranteed clicks left: not open
      2  forced listing: in force
      true  a quota, guarantee or forced listing overrides the least
      3  mode; 0 keeps it out
    121  second weight: the square of the entries from its rank on
      10  admitted entries above it
      6  weights in d/out.set
    true  listed: both conditions hold
      true  plays a part: has a weight in a mode other than 0, or a skim
      true  moves traffic: hits in 24 hours, a quota of this hour or a guarantee
      true  is a trade: id above 9
    forced 2  state in the list
    0  skim
      0  its own skim, -1 for none
    $ for id in 13 23 27 28 29 31 33 34; do vantrel-inspect trade $id | sed -n '5,/^caps/p' | grep -v 'none$\|  no$'; done
    scoring            mode 2: gets visitors as long as it keeps its caps
    these three count  only while it sends enough visitors
    caps               cef at least 50 % of uin
    scoring            mode 1: gets visitors as long as it does not get too many for those it sends
    these three count  only while it sends enough visitors
    boost              score times 50 % below 10 clicks of its visitors (cef) for 100 hits in 24 hours, 200 % from there on; now 10
    scoring            mode 1: gets visitors as long as it does not get too many for those it sends
    quota of clicks    in force for ever
      from 0:00         1 1 1 1 1 1 1 1 1 1 1 1
      from 12:00        1 1 1 1 1 1 1 1 1 1 1 1
    these three count  only while it sends enough visitors
    scoring            mode 1: gets visitors as long as it does not get too many for those it sends
    forced listing     forced 1, in force for 1 more hour
    these three count  only while it sends enough visitors
    scoring            mode 1: gets visitors as long as it does not get too many for those it sends
    quota of clicks    in force for 1 more hour
      from 0:00         3 3 3 3 3 3 3 3 3 3 3 3
      from 12:00        3 3 3 3 3 3 3 3 3 3 3 3
    these three count  even while it sends too few visitors
    scoring            mode 3: gets visitors without checks
    guarantee          3 more clicks
    quota of clicks    in force for 1 more hour
      from 0:00         3 3 3 3 3 3 3 3 3 3 3 3
      from 12:00        3 3 3 3 3 3 3 3 3 3 3 3
    these three count  only while it sends enough visitors
    scoring            mode 1: gets visitors as long as it does not get too many for those it sends
    these three count  only while it sends enough visitors
    boost              score times 100 % below 4 clicks sent to it in 24 hours, 1 % from there on; now 3
    scoring            mode -1: gets visitors without checks
    these three count  only while it sends enough visitors
    boost              score times 7 % below 1 clicks of its visitors (cef) in 24 hours, 1 % from there on; now 0
    $ formula() { printf "|50|150|103|3|2|1|0||10|$1|" >../formula; shift; vantrel-inspect why --with d/out.mod=../formula $*; }
    $ formula '0/0+uin24*out24/(clk24+2)' --all | sed -n 2,6p; for id in 14; do formula 'x+uin24*out24/(clk24+2)' $id | sed -n '3,/  rank/p'; done
    11  site11.example  Rank 1 of 36: the formula gives it 8960; it has weight 1500.
    35  site35.example  Rank 2 of 36: the formula gives it 3001; it has weight 900.
    23  site23.example  Rank 3 of 36: the formula gives it 798.5, its own boost makes 200 % of it; it has weight 600.
    24  site24.example  Rank 4 of 36: the formula gives it 799; it has weight -4.
    34  site34.example  Rank 5 of 36: the formula gives it 3001, its own boost makes 7 % of it; it has no weight and is not listed.
    -9  score, by the formula of d/out.mod
      x+uin24*out24/(clk24+2)  the formula
      x+100*101/(0+2)  with the numbers put in
      5050  its value
      0  added for cef / uin of 24 hours, without its fraction
        0  cef / uin
        50  percentage in d/out.mod, 100 for no effect
      -0.5  added for out / uin of 24 hours, without its fraction
        1  out / uin
        150  percentage in d/out.mod, 100 for no effect
      0  added for ctt / out of 24 hours, without its fraction
        0  ctt / out
        103  percentage in d/out.mod, 100 for no effect
      -9  mode 2: failed, the score is a code
        101  percent measured
        50  percent is the limit
        -1  least cef per uin in percent, -1 for none
        50  most out per uin in percent, -1 for none
        -1  least ctt per out in percent, -1 for none
      -9  no boost of its own
    35  rank among all 36 entries of the index, reserved ones included
    $ formula '9e307*9-9e307*9' --all | sed -n '2p;$p'; formula 'y=rin24/0' 11 | sed -n '3,7p'
     0  direct          Rank 1 of 36: mode 0 keeps it from weights; it has no weight and is not listed.
    35  site35.example  Rank 36 of 36: the formula's value is no number; the weights had all gone to better ranks, it has second weight 1.
    0.5  score, by the formula of d/out.mod
      y=rin24/0  the formula
      y=100/0  with the numbers put in
      1  its value
        6  is the place of an error: division by zero: the whole product counts as 1
    $ printf '|1|1|1|1|-1|0|1||0||' >../formula; vantrel-inspect why --all --with d/out.mod=../formula | grep -m 2 'is a number'; vantrel-inspect preview --with d/out.mod=../formula | sed -n '1,5p;/ no number/p'
    17  site17.example  Rank 24 of 36: the window weights of d/out.mod add up to 0, so no score is a number; it has weight 1.
    18  site18.example  Rank 25 of 36: the window weights of d/out.mod add up to 0, so no score is a number; the weights had all gone to better ranks, it has second weight 144.
    The next outgoing list, for hour 13: 23 changes
    id  name            rank  new  weight    new   share     new  change   reason
    20  site20.example     3    1      75  26221   7.54%  61.54%  changes  sends, got none
    32  site32.example     -    2       -      0       -      0%  enters   mode 0
    11  site11.example     -    3       -  10085       -  23.67%  enters   mode 1: 181% > 180%
    17  site17.example     -   13       -      1       -      0%  enters   no number
    18  site18.example     -   14       -  (144)       -      0%  enters   no number
    19  site19.example     -   15       -  (121)       -      0%  enters   no number
    21  site21.example     -   16       -  (100)       -      0%  enters   no number
    22  site22.example     -   17       -   (81)       -      0%  enters   no number
    31  site31.example     -   20       -    (4)       -      0%  enters   no number
    34  site34.example     -   21       -    (1)       -      0%  enters   no number
    $ poke() { printf "$3" | dd of=$1 bs=1 seek=$2 conv=notrunc status=none; }
    $ poke d/t/index $((996 * 29 + 900)) '\144'; poke d/t/index $((996 * 29 + 900 + 4 * 13)) '\7'; vantrel-inspect trade 29 | grep -A2 '^quota'; for hour in 0 13 23; do vantrel-inspect why 29 --hour $hour | grep ' of hour '; done
    quota of clicks    in force for 1 more hour
      from 0:00         100   3   3   3   3   3   3   3   3   3   3   3
      from 12:00          3   7   3   3   3   3   3   3   3   3   3   3
      100  quota of hour 0: open
      7  quota of hour 13: open
      3  quota of hour 23: open
    $ touch -d '2026-11-16 13:59:20' l/sys/cron.last; for at in 13:58:30 13:59:30 14:00:30; do AT=$at vantrel-inspect preview | grep '^The\|site\(29\|30\)'; AT=$at vantrel-inspect why 29 | grep 'hours it is'; done; touch -d '2026-11-16 13:07:20' l/sys/cron.last
    The next outgoing list, for hour 13: 23 changes
    29  site29.example     -    9       -  (144)       -      0%  enters   quota
    30  site30.example     -   10       -  (121)       -      0%  enters   forced
        1  hours it is in force, -1 for ever
    The next outgoing list, for hour 14: 22 changes
    30  site30.example     -    9       -      0       -      0%  enters   below minimum
        1  hours it is in force, -1 for ever
    The next outgoing list, for hour 14: 22 changes
    30  site30.example     -    9       -      0       -      0%  enters   below minimum
        1  hours it is in force, -1 for ever
    $ for at in 13:07:20 13:07:21 13:09:19 13:09:20 15:07:19 15:07:20 '13:07:19 2 days' '13:07:20 2 days'; do AT=$at vantrel-inspect sites . | sed -n '2s/.*\.  *\([0-9]* [a-z]* ago\)  *25.*/\1/p'; done
    0 seconds ago
    1 second ago
    119 seconds ago
    2 minutes ago
    119 minutes ago
    2 hours ago
    47 hours ago
    2 days ago
    $ cp -p d/out.lst ..; poke d/out.lst 284 '\143'; poke d/out.lst $((284 + 216 + 160)) '\0\0\0\0\0\0\360\177'; touch -r ../out.lst d/out.lst; vantrel-inspect list; vantrel-inspect preview | tail -n 4; cp -p ../out.lst d
    Outgoing list of 2026-11-16 13:07, 5 trades
    rank  id  name            weight  second  state               skim   share   score  reason
       1  99  site12.example     600       0  quota or guarantee    90  86.33%       -  no longer a trade
       2  16  site16.example     inf       0  quota or guarantee    90      0%      -7  changed since: cap ctt: 42.86% < 50%
       3  20  site20.example      75       0  quota or guarantee    90  10.79%  200.07  changed since: sends, got none
       4  26  site26.example      20       0  quota or guarantee    90   2.88%     150  changed since: below minimum
       5  28  site28.example       0       4  quota or guarantee    90      0%       0  below minimum
    20  site20.example     3    -      75      -  10.79%       -  leaves   sends, got none
    26  site26.example     4    -      20      -   2.88%       -  leaves   below minimum
    28  site28.example     5    -     (4)      -      0%       -  leaves   below minimum
    99  site12.example     1    -     600      -  86.33%       -  leaves   no such trade any more
    $ { head -c 284 ../out.lst; tail -c 216 ../out.lst; } >d/out.lst; touch -r ../out.lst d/out.lst; vantrel-inspect list | cut -c1-80; cp -p ../out.lst d
    Outgoing list of 2026-11-16 13:07, 1 trade
    rank  id  name            weight  second  state               skim  share  score
       1  28  site28.example       0       4  quota or guarantee    90     0%      0
    $ rm d/ds; vantrel-inspect preview | head -n 2; vantrel-inspect why 29 --json | grep -c meaning; : >d/ds; vantrel-inspect preview --json | grep -c meaning
    d/ds  The dynamic skim settings cannot be opened.
    dynamic skim settings can not be loaded  Follows the event of the missing d/ds: every trade keeps its own skim.
    0
    0
    [1]
    $ for file in d/out.mod d/nm/track d/set d/t/sum d/t/index; do mv $file ..; vantrel-inspect preview; vantrel-inspect list 2>&1 | sed -n 3p | cut -c1-60; mv ../${file##*/} $file; done; rm l/sys/cron.last; AT=13:09 vantrel-inspect preview --hits | tail -n 1 | cut -c1-40; echo 30 >d/sleep; AT=13:09 vantrel-inspect preview --hits; rm d/sleep; touch -d '2026-11-16 13:07:20' l/sys/cron.last
    d/out.mod  The outgoing modifiers cannot be opened; the old outgoing list stays.
    The run would end before its list: d/out.mod
       1  12  site12.example     600       0  quota or guarantee
    The run would end before its list: Unable to open file d/nm/track
       1  12  site12.example     600       0  quota or guarantee
    d/set  The main settings cannot be opened.
    The run would end before its list: d/set
       1  12  site12.example     600       0  quota or guarantee
    d/t/sum  The totals of all windows cannot be opened or written.
    The run would end before its list: d/t/sum
       1  12  site12.example     600       0  quota or guarantee
    d/t/index  The trade database cannot be opened or written.
    The run would end before its list: d/t/index
       1  12  site12.example     600       0  quota or guarantee
    28  site28.example     5    -     (4)   
    The run would end before its list: d/sleep holds back a run started in this second

Events.

    $ event() { printf "|20261116$1|$2|$3|$4|$5||||\n"; }
    $ { event 0000 cron 1 d/setx 0; event 1150 cron 1 'd&#47;t&#47;12' 0; event 1151 cron 1 'd&#47;t&#47;12' 1; event 1152 cron 1 'd/h/site12.example.his' 0; event 1153 cron 9 d/set 1; event 1154 cron 1 'a long subject of no event' 1; event 1155 cron 1 d/t/ 1; } >l/sys/sys.log
    $ { event 1156 cron 1 d/set 1; event 1157 'ad&#109;in' 3 'x&#33;&#32;&#126;&#127;&#1234;&#65&#0;&;&#x41;' 2; printf '%s\n' 'torn 1111111 of a run' 'torn 2222222 of a run' '|2026111611x7|d/set' '|2026111611x8|d/set' '|2026111611x8|d/set'; event 1158 cron 3 '' 0; event 1159 cron 3 '' 0; event 1207 cron 3 '' 0; echo '|202611161|'; echo; printf '|2026111612'; } >>l/sys/sys.log
    $ vantrel-inspect events
    2026-11-16 00:00  d/setx  (cron, code 1)
    2026-11-16 11:50  d/t/12  the run went on
        A trade's statistics file cannot be written; this minute is not stored in it.
        -> Give the run's user write permission on the file.
    2026-11-16 11:51  d/t/12  the run ended
        A trade's statistics file cannot be read; no window was advanced.
        -> Create it with 80,640 zero bytes, readable and writable for the run's user.
    2026-11-16 11:52  d/h/site12.example.his  the run went on
        A trade's history cannot be read or appended to; its 7-day window misses it.
        -> Normal for a new trade until its first 23:59; otherwise check the permissions of d/h/.
    2026-11-16 11:53  d/set  (cron, code 9)
    2026-11-16 11:54  a long subject of no event  (cron, code 1)
    2026-11-16 11:55  d/t/  the run ended
        A trade's statistics file cannot be read; no window was advanced.
        -> Create it with 80,640 zero bytes, readable and writable for the run's user.
    2026-11-16 11:56  d/set  the run ended
        The main settings cannot be opened.
        -> Save the main settings in the administration, or check permissions.
    2026-11-16 11:57  x!&#32;~&#127;&#1234;&#65&#0;&;&#x41;  (ad&#109;in, code 3)
      a damaged line
      a damaged line
    2026111611x7  a damaged line
    2026111611x8  a damaged line, 2 times, last at 2026111611x8
    2026-11-16 11:58  gap  the run went on, 3 times, last at 2026-11-16 12:07
        The run history has a gap: one of the last 39 minutes has no run, or this one lasted into the next minute. A synchronisation follows.
        -> Nothing after a reboot; if it repeats, check the scheduler and the length of the runs.
    202611161  a damaged line
      a damaged line
    2026111612  a damaged line
    $ for options in 3 0 '--level 1 2' '--trade 12' '--trade site12.example' '--trade gone' '--since 11:57' '--since 2026-11-16' '--since 2026-11-17' '--since 71m' '--since 70m' '--since 1h' '--since 0d'; do echo "$options:" $(vantrel-inspect events $options 2>&1 | grep -v '^  ' | cut -c1-25 | paste -sd';'); done
    3: 14 other events before th;202611161 a damaged line;2026111612 a damaged lin
    0: 17 other events before th
    --level 1 2: 3 other events before the;2026-11-16 11:55 d/t/ t;2026-11-16 11:56 d/set
    --trade 12: 2026-11-16 11:50 d/t/12 ;2026-11-16 11:51 d/t/12 ;2026-11-16 11:52 d/h/sit
    --trade site12.example: 2026-11-16 11:50 d/t/12 ;2026-11-16 11:51 d/t/12 ;2026-11-16 11:52 d/h/sit
    --trade gone: No events.
    --since 11:57: 2026-11-16 11:57 x!&#32;;2026111611x7 a damaged l;2026111611x8 a damaged l;2026-11-16 11:58 gap th;202611161 a damaged line;2026111612 a damaged lin
    --since 2026-11-16: 2026-11-16 00:00 d/setx ;2026-11-16 11:50 d/t/12 ;2026-11-16 11:51 d/t/12 ;2026-11-16 11:52 d/h/sit;2026-11-16 11:53 d/set ;2026-11-16 11:54 a long ;2026-11-16 11:55 d/t/ t;2026-11-16 11:56 d/set ;2026-11-16 11:57 x!&#32;;2026111611x7 a damaged l;2026111611x8 a damaged l;2026-11-16 11:58 gap th;202611161 a damaged line;2026111612 a damaged lin
    --since 2026-11-17: No events.
    --since 71m: 2026-11-16 11:56 d/set ;2026-11-16 11:57 x!&#32;;2026111611x7 a damaged l;2026111611x8 a damaged l;2026-11-16 11:58 gap th;202611161 a damaged line;2026111612 a damaged lin
    --since 70m: 2026-11-16 11:57 x!&#32;;2026111611x7 a damaged l;2026111611x8 a damaged l;2026-11-16 11:58 gap th;202611161 a damaged line;2026111612 a damaged lin
    --since 1h: 2026-11-16 12:07 gap th;202611161 a damaged line;2026111612 a damaged lin
    --since 0d: No events.
    $ vantrel-inspect events --since '2026-11-16 11:59' | head -n 1; for since in 1s m 1:00 2026-1-1 '2026-11-16 1' 123456789m 'x1d'; do vantrel-inspect events --since "$since"; done |& uniq -c
    2026-11-16 11:59  gap  the run went on, 2 times, last at 2026-11-16 12:07
          7 vantrel-inspect: --since takes 2026-11-23, "2026-11-23 12:50", 12:50, 90m, 12h or 2d
    $ for minute in {10..30}; do event 12$minute cron 1 d/x$minute 0; done >l/sys/sys.log; vantrel-inspect events | head -n 2; vantrel-inspect events 99 | wc -l
    1 other event before these
    2026-11-16 12:11  d/x11  (cron, code 1)
    21
    $ rm l/sys/sys.log; vantrel-inspect events; mkdir l/sys/sys.log; vantrel-inspect events; rmdir l/sys/sys.log
    No events.
    No events.
    $ printf '.\n@DIAGNOSTICS@ \n@DIAGNOSTICS@\n-\n' | vantrel-event-pages | sed -n '1,9p;/no text/,+5p;/[\\]-a/p;$p'
    .
    @DIAGNOSTICS@ 
    .TP
    .B unable to perform hdd check (write test)
    Ends the run.
    The scratch file l/hdd.check cannot be written.
    .br
    .I Cure:
    Give the run's user write permission on l/ and l/hdd.check.
    The user\-agent rating cannot be opened.
    .B (no text, code 3)
    The run goes on.
    The run history has a gap: one of the last 39 minutes has no run, or this one lasted into the next minute. A synchronisation follows.
    .br
    .I Cure:
    Nothing after a reboot; if it repeats, check the scheduler and the length of the runs.
    -

Runs.

    $ runs() { printf "$1" >l/sys/cron.run; vantrel-inspect runs; }
    $ runs ''; runs '12312359\n01010000\n01010003\n11161308\n'; runs '11161306\n11161407\n'; runs '11161306\n11161408\n'; runs '11161407\n11161305\n11161306\nx\n1116130\nxxxxxxxx\n'; runs '11161408\n11161306\n11161306\n11161305\n'
    No run has been recorded.
    2025-12-31 23:59 to 2026-01-01 00:00  2 runs
      gap: 2 minutes without a run
    2026-01-01 00:03 to 2026-01-01 00:03  1 run
      gap: 460144 minutes without a run
    2026-11-16 13:08 to 2026-11-16 13:08  1 run
    2026-11-16 13:06 to 2026-11-16 13:06  1 run
      gap: 60 minutes without a run
    2026-11-16 14:07 to 2026-11-16 14:07  1 run
    2025-11-16 13:06 to 2025-11-16 13:06  1 run
      gap: 61 minutes without a run
    2025-11-16 14:08 to 2025-11-16 14:08  1 run
    2025-11-16 14:07 to 2025-11-16 14:07  1 run
      gap: 525537 minutes without a run
    2026-11-16 13:05 to 2026-11-16 13:06  2 runs
    3 lines of the run history without a run stamp
    2025-11-16 14:08 to 2025-11-16 14:08  1 run
      gap: 525537 minutes without a run
    2026-11-16 13:06 to 2026-11-16 13:06  1 run
      the clock went back
    2026-11-16 13:06 to 2026-11-16 13:06  1 run
      the clock went back
    2026-11-16 13:05 to 2026-11-16 13:05  1 run

Names, and numbers that do not fit.

    $ name() { printf "$2\0" | dd of=d/t/index bs=1 seek=$((996 * $1 + 4)) conv=notrunc status=none; }
    $ cp d/t/index ..; name 11 'z\xc3\xbcrich \xc2\xa0'; name 12 '\xe6\x97\xa5\xe6\x9c\xac \xf0\x9f\x98\x80 \xf4\x8f\xbf\xbf'; name 13 '\xc2\x80\xc2\x9f\xc1\x81\xf5abc'; name 14 '\xe6\x97'; name 15 '\x7f\x1f\x01\x1bx ~'
    $ name 16 '<b>\\"x'; name 17 '\xe6\x97x\xc3'; name 18 '\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc'; name 19 '\xc3\xbcwelve letters and more, of a name that is long'
    $ name 20 '\xdf\xbf\xe0\xa0\x80\xef\xbf\xbd\xf0\x90\x80\x80'; name 21 '\xc3A\xe6\x97A\xf0\x90\x80A\xdf\xc0'
    $ vantrel-inspect trades --columns out24 | sed -n '1,2p;13,24p'; traffic 12 rin24=-5 out60=2147483647; vantrel-inspect trades --sort out60 --top 4; vantrel-inspect trades | sed -n '5,13p;$p'
    Traffic of the last 60 minutes, 24 hours and 7 days up to 2026-11-16 13:07
    id  name                                             out24
    10  spare (reserved)                                     0
    11  z\xc3\xbcrich \xc2\xa0                                           181 (esc)
    12  \xe6\x97\xa5\xe6\x9c\xac \xf0\x9f\x98\x80 \xf4\x8f\xbf\xbf                                               5 (esc)
    13  ???????abc                                         100
    14  ??                                                 101
    15  ????x ~                                              0
    16  <b>\"x                                               7
    17  ??x?                                                20
    18  \xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc                                        20 (esc)
    19  \xc3\xbcwelve letters and more, of a name that is long      1 (esc)
    20  \xdf\xbf\xe0\xa0\x80\xef\xbf\xbd\xf0\x90\x80\x80                                                 3 (esc)
    21  ?A??A???A??                                          2
    Traffic of the last 60 minutes, 24 hours and 7 days up to 2026-11-16 13:07
    id  name            in60       out60  in24  uniq24  out24  clk24  ratio  in07  out07
    12  \xe6\x97\xa5\xe6\x9c\xac \xf0\x9f\x98\x80 \xf4\x8f\xbf\xbf             0  2147483647    -5       0      0      0     0%     0      0 (esc)
    31  site31.example     0           3    20      10      3      0    15%     0      0
    24  site24.example     0           2   200      20     80      0    40%     0      0
    29  site29.example     0           2    20       0      0      0     0%     0      0
        all 36             1  2147483655  1011    4502    609      0    60%     0      0
    Not shown: 32 behind these.
    12  \xe6\x97\xa5\xe6\x9c\xac \xf0\x9f\x98\x80 \xf4\x8f\xbf\xbf                             0  2147483647    -5       0      0      0     0%     0      0 (esc)
    13  ???????abc                         0           0   100     100    100      0   100%     0      0
    14  ??                                 0           0   100     100    101      0   101%     0      0
    15  ????x ~                            0           0    12      12      0      0     0%     0      0
    16  <b>\"x                             0           0    10      10      7      0    70%     0      0
    17  ??x?                               0           0    20      20     20      0   100%     0      0
    18  \xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc                       0           0    20      20     20      0   100%     0      0 (esc)
    19  \xc3\xbcwelve letters and more, of a~     0           0     1      10      1      0   100%     0      0 (esc)
    20  \xdf\xbf\xe0\xa0\x80\xef\xbf\xbd\xf0\x90\x80\x80                               0           0    20      20      3      0    15%     0      0 (esc)
    Not shown: 10 reserved without traffic.
    $ traffic 19 $(for window in 60 24 07; do for counter in rin uin out clk; do echo $counter$window=-2147483648; done; done); vantrel-inspect trades | sed -n '2p;12,15p;$p'
    id  name                 in60        out60         in24       uniq24        out24        clk24
    19  \xc3\xbcwelve lett~  -2147483648  -2147483648  -2147483648  -2147483648  -2147483648  -2147483648 (esc)
    20  \xdf\xbf\xe0\xa0\x80\xef\xbf\xbd\xf0\x90\x80\x80                    0            0           20           20            3            0 (esc)
    21  ?A??A???A??             0            0           12           11            2            0
    22  site22.exam~            0            0           20           12            2            0
    Not shown: 10 reserved without traffic; 3 columns.
    $ for sort in 'id --reverse' 'name' 'name --reverse' 'clk24 --reverse'; do vantrel-inspect trades --columns in24 --top 2 --sort $sort | sed -n 3,4p; done; vantrel-inspect trades --reverse --top 99 --columns left | sed -n 3,4p; vantrel-inspect trades --top 0 | tail -n 2
    35  site35.example           20
    34  site34.example           20
    16  <b>\"x                       10
     2  content (reserved)            0
    12  \xe6\x97\xa5\xe6\x9c\xac \xf0\x9f\x98\x80 \xf4\x8f\xbf\xbf           -5 (esc)
    17  ??x?             20
    19  \xc3\xbcwelve letters and more, of a name that is long  -2147483648 (esc)
     0  direct (reserved)                                          0
    19  \xc3\xbcwelve letters and more, of a name that is long     0 (esc)
    12  \xe6\x97\xa5\xe6\x9c\xac \xf0\x9f\x98\x80 \xf4\x8f\xbf\xbf                                              1 (esc)
        all 36  -2147483647      7  -2147482638  -2147479156  -2147483040  -2147483648   100%
    Not shown: 36 behind these; 2 columns.
    $ vantrel-inspect metrics --trades | grep '_trade_hits.*"1[689]".*60m.*rin' | sed "s,$PWD,HERE,"
    vantrel_trade_hits{site="HERE",id="16",trade="<b>\\\"x",window="60m",counter="rin"} 0
    vantrel_trade_hits{site="HERE",id="18",trade="\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc\xc3\xbc",window="60m",counter="rin"} 0 (esc)
    vantrel_trade_hits{site="HERE",id="19",trade="\xc3\xbcwelve letters and more, of a name that is long",window="60m",counter="rin"} -2147483648 (esc)
    $ cat >../unpack.py <<'END'
    > import json, subprocess, sys
    > page = json.load(sys.stdin)["data"]
    > LETTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_"
    > def digits(text, number=0):
    >     for value in map(LETTERS.index, text):
    >         number = number * 32 + value % 32
    >         if value < 32:
    >             yield number
    >             number = 0
    > def unpacked(value):
    >     if not isinstance(value, list):
    >         return value
    >     if len(value) == 1:
    >         return list(digits(value[0])) if isinstance(value[0], str) else page["pool"][value[0]]
    >     if value[0] == 0:
    >         return [unpacked(item) for item in value[1:]]
    >     keys = page["shapes"][abs(value[0])]
    >     if value[0] > 0:
    >         return dict(zip(keys, digits(value[1]) if len(value) <= len(keys) else map(unpacked, value[1:])))
    >     kinds = {int: lambda column: page["pool"][column], str: digits, list: lambda column: map(unpacked, column)}
    >     return [dict(zip(keys, row)) for row in zip(*(kinds[type(column)](column) for column in value[1:]))]
    > for view in "check site list trades events runs".split():
    >     shown = json.loads(subprocess.check_output(f"vantrel-inspect {view} --json || true", shell=True))
    >     print(view, "the same" if unpacked(page[view]) == shown["data"] else "differs")
    > print("notable", unpacked(page["notable"]))
    > END
    $ vantrel-inspect report --json | tee ../report.json | python3 ../unpack.py
    check the same
    site the same
    list the same
    trades the same
    events the same
    runs the same
    notable {'worst_payers': [11, 14], 'newcomers': [11, 13, 14, 17, 18, 20, 15, 21]}
    $ sed 's/"directory":"[^"]*"//; s/,"[^"]*",[a-z]*,\[-2/,USER,[-2/' ../report.json | cksum
    1881531627 46108
    $ cp ../index d/t/index
    $ for id in 20 21 22 23 24 25; do sed -i 1,2d d/h/site$id.example.his; done; for id in 22 23 24 25; do sed -i 1d d/h/site$id.example.his; done
    $ traffic 21 rin24=9; traffic 22 rin24=1; traffic 23 out24=1; traffic 24; traffic 25 rin24=2; traffic 26 rin24=49 out24=50; traffic 27 rin24=50 out24=50; traffic 28 out24=49; traffic 29 out24=50; for id in 30 31; do traffic $id rin24=1 out24=$((id + 30)); done
    $ vantrel-inspect report --json | python3 ../unpack.py | tail -n 1
    notable {'worst_payers': [31, 30, 29, 11, 26, 14], 'newcomers': [25, 22, 23]}
    $ for id in {32..35}; do traffic $id rin24=1 out24=$((id + 30)); done; vantrel-inspect report --json | python3 ../unpack.py | tail -n 1
    notable {'worst_payers': [35, 34, 33, 32, 31, 30, 29, 11], 'newcomers': [25, 22, 23]}
    $ traffic 12; traffic 19 rin60=7 uin24=12 out24=50 clk07=3

On a terminal.

    $ tty() { script -qec "vantrel-inspect $*" /dev/null </dev/null | cat -v | tr -d '\r' | sed 's/\^M$//'; }
    $ printf '11161305\n11161307\nx\n' >l/sys/cron.run; { event 1306 cron 1 d/set 1; event 1306 cron 1 d/ds 0; } >l/sys/sys.log; cp -p d/out.lst ..
    $ tty runs; tty events; tty check | grep -v 'looked at as' | cut -c1-80; tty list | cut -c1-130; NO_COLOR=1 tty list | head -n 4; NO_COLOR= tty runs | head -n 2
    2026-11-16 13:05 to 2026-11-16 13:05  1 run
    ^[[33m  gap: 1 minute without a run^[[0m
    2026-11-16 13:07 to 2026-11-16 13:07  1 run
    ^[[33m1 line of the run history without a run stamp^[[0m
    2026-11-16 13:06  ^[[31md/set^[[0m  the run ended
        The main settings cannot be opened.
        -> Save the main settings in the administration, or check permissions.
    2026-11-16 13:06  ^[[33md/ds^[[0m  the run went on
        The dynamic skim settings cannot be opened.
        -> Save the skim settings once in the administration, or check permissions.
    ^[[33mwarning^[[0m: l/sys/cron.run: 1 line no run wrote: "x"; the run behind one
    ^[[33mwarning^[[0m: l/sys/cron.run: 1 gap in the last 3 runs, before 11161307; t
    ^[[33mwarning^[[0m: events: 1 run ended early in the last hour: d/set; what came
    ^[[33mwarning^[[0m: d/t/sum: the windows of 24 hours are not the sum of the minu
    ^[[33mwarning^[[0m: trades: scoring mode is none of 0, 1 and 2: no ratio is chec
    ^[[33mwarning^[[0m: d/ds: fewer than four switches: dynamic skim is off -> save 
    ^[[33mwarning^[[0m: d/out.set: line 3, piece 6: weight 3: "600.5" is no number; 
    ^[[33mwarning^[[0m: d/alerts: no alert is left that could be sent: 3 of five wer
    ^[[32mok^[[0m: 25 things looked at: scheduler, disk, d/t/index, l/in, l/out, d/t
    ^[[1mThe next run would reach its end, but something is off. Something is being 
    Outgoing list of 2026-11-16 13:07, 5 trades
    ^[[1mrank  id  name            weight  second  state               skim   share   score  reason^[[0m
       1  12  site12.example     600       0  quota or guarantee    90   60.3%      -6  changed since: guarantee              #######
       2  16  site16.example     300       0  quota or guarantee    90  30.15%      -7  changed since: cap ctt: 42.86% < 50%  ####
       3  20  site20.example      75       0  quota or guarantee    90   7.54%  200.07  changed since: sends, got none        #
       4  26  site26.example      20       0  quota or guarantee    90   2.01%       0  changed since: below minimum          #
       5  28  site28.example       0       4  quota or guarantee    90      0%       0  below minimum
    Outgoing list of 2026-11-16 13:07, 5 trades
    rank  id  name            weight  second  state               skim   share   score  reason
       1  12  site12.example     600       0  quota or guarantee    90   60.3%      -6  changed since: guarantee              #######
       2  16  site16.example     300       0  quota or guarantee    90  30.15%      -7  changed since: cap ctt: 42.86% < 50%  ####
    2026-11-16 13:05 to 2026-11-16 13:05  1 run
    ^[[33m  gap: 1 minute without a run^[[0m
    $ for rin in 100 50 1 0; do printf "|202611$((10 + rin % 7))|$rin|0|0|0|0|0|0|0|0|0|0|0|0|0|0|0|0|0|0||||||||||"; done >d/h/all.his
    $ tty site | tail -n 4; sed -i 's/|100|/|1|/; s/|50|/|0|/' d/h/all.his; tty site | tail -n 4; tty trade 19 | tail -n 3; tty why 11 | head -n 1; tty sites . ../gone | cut -c1-90; tty preview --hits | tail -n 1; tty trades | tail -n 1; AT=13:20 tty trades | head -n 1
    2026-11-12  100       0    0       0  ########################################
    2026-11-10   50       0    0       0  ####################
    2026-11-11    1       0    0       0  #
    2026-11-10    0       0    0       0
    2026-11-12   1       0    0       0  ########################################
    2026-11-10   0       0    0       0
    2026-11-11   1       0    0       0  ########################################
    2026-11-10   0       0    0       0
    2026-11-13   0       0    0       0
    2026-11-14   0       0    0       0
    2026-11-15   0       0    0       0
    ^[[1msite11.example^[[0m, id 11, judged for hour 13
    ^[[1mverdict  site     last run        trades  listed  in60  out60  backup          worst 
    fatal    ../gone  never                -       -     -      -  never           ../gone: ca
    warning  .        10 seconds ago      25       5     8      0  10 seconds ago  l/sys/cron.
    2 sites, ^[[31m1 fatal^[[0m, ^[[33m1 warning^[[0m
    The run would end before its list: another run was let in in this minute
    ^[[2mNot shown: 10 reserved without traffic.^[[0m
    Traffic of the last 60 minutes, 24 hours and 7 days up to 2026-11-16 13:07^[[33m: 12 minutes old, no run has stored anything since^[[0m

The same as JSON, and what monitoring asks for.

    $ json() { vantrel-inspect "$@" --json | python3 -m json.tool --compact; }
    $ json runs; json events 1; json check | sed 's/"user":.*"findings"/"findings"/'; json sites . ../gone | sed "s,$PWD,HERE,"; json alive
    {"view":"runs","data":{"unreadable_lines":1,"stretches":[{"first":"2026-11-16 13:05","last":"2026-11-16 13:05","runs":1,"minutes_missed_before":0},{"first":"2026-11-16 13:07","last":"2026-11-16 13:07","runs":1,"minutes_missed_before":1}]}}
    {"view":"events","data":{"more":1,"events":[{"time":"2026-11-16 13:06","times":1,"first":"2026-11-16 13:06","source":"cron","code":"1","subject":"d/ds","level":"0","consequence":"the run went on","meaning":"The dynamic skim settings cannot be opened.","remedy":"Save the skim settings once in the administration, or check permissions."}]}}
    {"view":"check","data":{"status":1,"verdict":"The next run would reach its end, but something is off. Something is being lost.","reaches_end":true,"list_worth_following":true,"nothing_lost":false,"findings":[{"severity":"warning","question":"","subject":"l/sys/cron.run","finding":"1 line no run wrote: \"x\"; the run behind one reads a single minute of logs","remedy":"take the lines out; a power cut or another program left them"},{"severity":"warning","question":"","subject":"l/sys/cron.run","finding":"1 gap in the last 3 runs, before 11161307; the run behind it counted what had come in","remedy":"see vantrel-inspect runs; a reboot explains one, a busy machine many"},{"severity":"warning","question":"loss","subject":"events","finding":"1 run ended early in the last hour: d/set; what came in in their minutes is not counted; the last early end was at 2026-11-16 13:06","remedy":"see vantrel-inspect events for what each means"},{"severity":"warning","question":"loss","subject":"d/t/sum","finding":"the windows of 24 hours are not the sum of the minutes in d/t/<id>: site11.example (100, the minutes make 0), site13.example (100, the minutes make 0), site14.example (100, the minutes make 0) and 6 more","remedy":"stop the scheduler and tar xzf d/backup/26-320-11.tar.gz d/t; left alone, the windows stay wrong for ever"},{"severity":"warning","question":"","subject":"trades","finding":"scoring mode is none of 0, 1 and 2: no ratio is checked: site30.example (3), site31.example (3), site34.example (-1)","remedy":"correct the trade in the administration"},{"severity":"warning","question":"loss","subject":"d/h","finding":"in 1 file (d/h/all.his) the day 20261111 stands there twice: the 7-day window counts the last seven records","remedy":"correct the file with an editor, or tar xzf d/backup/26-320-11.tar.gz d/h; a missed 23:59 is made up for after midnight under the new date"},{"severity":"warning","question":"loss","subject":"d/h","finding":"in 1 file (d/h/all.his) the days are not in order at 20261110: the 7-day window counts the last seven records","remedy":"correct the file with an editor, or tar xzf d/backup/26-320-11.tar.gz d/h; a missed 23:59 is made up for after midnight under the new date"},{"severity":"warning","question":"loss","subject":"d/h","finding":"in 1 file (d/h/all.his) the days are not in order at 20261111: the 7-day window counts the last seven records","remedy":"correct the file with an editor, or tar xzf d/backup/26-320-11.tar.gz d/h; a missed 23:59 is made up for after midnight under the new date"},{"severity":"warning","question":"loss","subject":"d/h","finding":"in 1 file (d/h/all.his) the last day is 20261110, yesterday is missing: the 7-day window counts the last seven records","remedy":"correct the file with an editor, or tar xzf d/backup/26-320-11.tar.gz d/h; a missed 23:59 is made up for after midnight under the new date"},{"severity":"warning","question":"","subject":"d/ds","finding":"fewer than four switches: dynamic skim is off","remedy":"save the skim settings again in the administration"},{"severity":"warning","question":"","subject":"d/out.set","finding":"line 3, piece 6: weight 3: \"600.5\" is no number; line 4, piece 8: weight 4: \"-4\" is not above 0; line 5, piece 10: weight 5: \"0\" is not above 0","remedy":"save the outgoing settings again in the administration"},{"severity":"warning","question":"","subject":"d/alerts","finding":"no alert is left that could be sent: 3 of five were","remedy":"set the flags of the sent ones back in the administration, or the thresholds"},{"severity":"ok","question":"","subject":"24 things looked at","finding":"scheduler, disk, d/t/index, l/in, l/out, d/t, d/jb, d/se, d/proxy, d/traffic.set, d/geo.rating, d/ip.psv, d/agent.rating, d/request.rating, d/tags.rating, d/set, d/out.mod, d/caps, d/nm/track, sh_sync.cgi, sh_hta.cgi, sh_top.cgi, d/backup, list","remedy":""}]}}
    {"view":"sites","data":{"status":2,"sites":[{"directory":"../gone","path":"../gone","status":2,"worst":{"severity":"fatal","subject":"../gone","finding":"cannot be entered: No such file or directory","remedy":""},"last_run":null,"list_written":null,"backup":null,"entries":null,"trades":null,"listed":null,"last60":null,"last24":null,"last07":null},{"directory":".","path":"HERE","status":1,"worst":{"severity":"warning","subject":"l/sys/cron.run","finding":"1 line no run wrote: \"x\"; the run behind one reads a single minute of logs","remedy":"take the lines out; a power cut or another program left them"},"last_run":1794834440,"list_written":1794834440,"backup":1794834440,"entries":36,"trades":25,"listed":5,"last60":{"rin":8,"uin":7,"out":0,"clk":0,"ctt":0,"ctg":0,"cef":0,"rec":0,"proxy_in":0,"proxy_out":0,"proxy_clk":0,"rti":1,"rto":0,"rtc":1},"last24":{"rin":500,"uin":393,"out":1057,"clk":0,"ctt":3,"ctg":0,"cef":49,"rec":0,"proxy_in":0,"proxy_out":0,"proxy_clk":0,"rti":0,"rto":11,"rtc":1},"last07":{"rin":0,"uin":0,"out":0,"clk":3,"ctt":0,"ctg":0,"cef":0,"rec":0,"proxy_in":0,"proxy_out":0,"proxy_clk":0,"rti":0,"rto":0,"rtc":0},"events":[{"code":"1","level":"0","count":1},{"code":"1","level":"1","count":1}],"gaps":1,"missed_minutes":1}]}}
    {"view":"alive","data":{"status":0,"verdict":"the list was written 10 seconds ago","age_seconds":10,"limit_seconds":180}}
    $ printf x >>d/out.lst; truncate -s 700 d/out.lst; touch -d '2026-11-16 13:07:20' d/out.lst; json list; json preview | cut -c1-900; json preview --hits; json why 18 | sed 's/.*"result"/"result"/'; vantrel-inspect list | tail -n 1
    {"view":"list","data":{"written":"2026-11-16 13:07","stray_bytes":200,"header":{"skim_3":60,"skim_6":90,"numbers":[3,5,0],"track":1,"texts":["http://www.host.example/out.cgi","gallery",""]},"entries":[{"rank":1,"id":12,"name":"site12.example","weight":600.0,"second_weight":0.0,"share_percent":100.0,"state":"quota or guarantee","skim":90,"score":-6.0,"reason":"changed since: guarantee"}]}}
    {"view":"preview","data":{"hour":13,"hits":false,"events":[],"entries":[{"id":17,"name":"site17.example","change":"enters","before":null,"after":{"rank":1,"weight":1500.0,"second_weight":0.0,"share_percent":46.88,"state":"normal","skim":null},"share_change_percent":46.88,"reason":"earned, got none"},{"id":18,"name":"site18.example","change":"enters","before":null,"after":{"rank":2,"weight":900.0,"second_weight":0.0,"share_percent":28.13,"state":"normal","skim":null},"share_change_percent":28.13,"reason":"earned, got none"},{"id":20,"name":"site20.example","change":"enters","before":null,"after":{"rank":3,"weight":600.0,"second_weight":0.0,"share_percent":18.75,"state":"normal","skim":null},"share_change_percent":18.75,"reason":"sends, got none"},{"id":29,"name":"site29.example","change":"enters","before":null,"after":{"rank":4,"weight":-4.0,"second_weight":0.0,"share_percent":0.0,"state"
    {"view":"preview","data":{"hour":13,"hits":true,"minutes":1.0,"events":[],"status":2,"ending":"another run was let in in this minute"}}
    "result":{"rank":2,"of":36,"score":300.0,"weight":900.0,"second_weight":0.0,"listed":true,"state":"normal","skim":null},"reason":"earned, got none","sentence":"Rank 2 of 36: its visitors clicked in the last hour and nothing of quality was sent back in it, which lifts its score to 300; it has weight 900."}}
    The file ends inside an entry.
    $ cp -p ../out.lst d; for at in 13:06:19 13:06:20 13:10:20 13:10:21 13:13:20 13:13:21; do AT=$at vantrel-inspect alive; done; AT=13:13:21 vantrel-inspect alive --minutes 7
    VANTREL WARNING: the list was written in the future | age=-61s;180;360
    VANTREL OK: the list was written -60 seconds ago | age=-60s;180;360
    VANTREL OK: the list was written 180 seconds ago | age=180s;180;360
    VANTREL WARNING: the last list was written 181 seconds ago | age=181s;180;360
    VANTREL WARNING: the last list was written 360 seconds ago | age=360s;180;360
    VANTREL CRITICAL: the last list was written 361 seconds ago | age=361s;180;360
    VANTREL OK: the list was written 361 seconds ago | age=361s;420;840
    $ rm d/out.lst; vantrel-inspect alive; vantrel-inspect list; mkdir d/out.lst; json alive; rmdir d/out.lst; ln -s out.lst d/out.lst; vantrel-inspect alive; rm d/out.lst; AT=13:30 vantrel-inspect sites .; printf x >d/out.lst; vantrel-inspect list; truncate -s 1073741825 d/out.lst; vantrel-inspect list; cp -p ../out.lst d
    VANTREL CRITICAL: no list has been written here
    vantrel-inspect: d/out.lst cannot be opened
    {"view":"alive","data":{"status":2,"verdict":"d/out.lst is no file","limit_seconds":180}}
    VANTREL UNKNOWN: d/out.lst: Too many levels of symbolic links
    verdict  site  last run        trades  listed  in60  out60  backup          worst finding
    warning  .     22 minutes ago      25       -     8      0  22 minutes ago  scheduler: the last run was let in at 2026-11-16 13:07, 22 minutes ago
    1 site, 1 warning
    vantrel-inspect: d/out.lst is damaged
    vantrel-inspect: d/out.lst is too large to be shown
    $ long=../$(printf 'x%.0s' {1..250}); cp -a . $long; (ulimit -f 1; vantrel-inspect sites $long $long ../gone $long ../gone ../gone | sed 's/xx*/x/g; s/   */  /g')
    verdict  site  last run  trades  listed  in60  out60  backup  worst finding
    fatal  ../x  never  -  -  -  -  never  ../x: the examination broke off
    fatal  ../x  never  -  -  -  -  never  ../x: the examination broke off
    fatal  ../gone  never  -  -  -  -  never  ../gone: cannot be entered: No such file or directory
    fatal  ../x  never  -  -  -  -  never  ../x: the examination broke off
    fatal  ../gone  never  -  -  -  -  never  ../gone: cannot be entered: No such file or directory
    fatal  ../gone  never  -  -  -  -  never  ../gone: cannot be entered: No such file or directory
    6 sites, 6 fatal
    $ mkdir ../bare; vantrel-inspect metrics ../gone ../bare | grep -v '^#' | sed "s,$(dirname $PWD),,"; for place in ../bare d; do vantrel-inspect check --site $place | grep -v 'looked at as'; done; vantrel-inspect site --site d
    vantrel_check_status{site="../gone"} 2
    vantrel_check_status{site="/bare"} 2
    vantrel_run_gaps{site="/bare"} 0
    vantrel_run_gap_seconds{site="/bare"} 0
    fatal: .: this is no site: it has no folder d and no folder l -> name the directory of the site with --site
    The next run would end early.
    fatal: .: this is no site: it has no folder d and no folder l -> the site is the folder above: use --site ..
    The next run would end early.
    vantrel-inspect: d/t/index cannot be opened
    [1]

Days.

    $ day() { printf "|$1|1|2|3|4|5|6|7|8|9|10|11|12.5|13|14|0|15|16|17|18||||||||||"; }
    $ for i in $(seq 1250 -1 1); do day $(date -d "2026-11-16 12:00 $i days ago" +%Y%m%d); done >d/h/all.his; vantrel-inspect site --csv days | sed -n '2p;$p'; json site | python3 -c 'import json, sys; d = json.load(sys.stdin)["data"]; print(len(d["days"]), d["last30"]["days"], d["last30"]["rin"], d["week_before"]["date"], d["yesterday"], d["reserved"]["last60"]["entries"][1], d["reserved"]["last07"]["share_in"])'
    2026-10-17,1,2,3,4,5,6,7,8,9,10,11,12,13,14
    2026-11-15,1,2,3,4,5,6,7,8,9,10,11,12,13,14
    30 30 30 2026-11-09 {'date': '2026-11-15', 'late': False, 'rin': 1, 'uin': 2, 'out': 3, 'clk': 4, 'ctt': 5, 'ctg': 6, 'cef': 7, 'rec': 8, 'proxy_in': 9, 'proxy_out': 10, 'proxy_clk': 11, 'rti': 12, 'rto': 13, 'rtc': 14, 'out_per_in': 300.0, 'proxy_in_share': 900.0, 'proxy_out_share': 333.3, 'quality_in': 12.0, 'quality_out': 4.3, 'quality_back': 3.5, 'trades': {'rin': 0, 'uin': 0, 'out': 0, 'clk': 0, 'ctt': 0, 'ctg': 0, 'cef': 0, 'rec': 0, 'proxy_in': 0, 'proxy_out': 0, 'proxy_clk': 0, 'rti': 0, 'rto': 0, 'rtc': 0}, 'gallery_out': 15, 'noref_in': 16, 'listed_in': 17} {'position': 1, 'id': 1, 'name': 'gallery', 'collects': 'clicks to the gallery', 'rin': 0, 'clk': 0, 'out': 0, 'share_in': 0.0, 'share_clk': None, 'share_out': None} None
    $ { day 20261109; day 20261115; day 20261116; day 20261116; day 2026111; day 20261301; } >d/h/all.his; cp d/h/all.his d/h/trades.his; vantrel-inspect site | sed -n '3,11p;/last . days/,$p'; AT=23:59 vantrel-inspect site | sed -n '/last . days/,$p'
    60 minutes                 8       7     0       0      0%        0%          -   0.1      -       -
    24 hours                 500     393  1057       0  211.4%        0%         0%     0      0       -
    7 days                     0       0     0       3       -         -          -     -      -       0
    2026-11-16 until 13:07     1       0     1       1    100%        0%         0%     0     17      17
    2026-11-15, day before     1       2     3       4    300%      900%     333.3%    12    4.3     3.5
    2026-11-09, week before    1       2     3       4    300%      900%     333.3%    12    4.3     3.5
    4 days recorded            4       8    12      16    300%      900%     333.3%    12    4.3     3.5
    q: points the traffic rules gave an incoming hit, a click sent out and a click of a
    trade's visitor on average; an ordinary one has 10.
    The last 4 days of the history
    date        in  unique  out  clicks
    2026-11-09   1       2    3       4
    2026-11-15   1       2    3       4
    2026-11-15   1       2    3       4
    2026-11-15   1       2    3       4
    2 records of the history without a date
    The last 4 days of the history
    date        in  unique  out  clicks
    2026-11-09   1       2    3       4
    2026-11-15   1       2    3       4
    2026-11-15   1       2    3       4
    2026-11-16   1       2    3       4
    2 records of the history without a date
    $ : >d/h/all.his; vantrel-inspect site | sed -n '3,8p;/last . days/,$p'; : >d/h/site11.example.his; vantrel-inspect trade 11 | tail -n 2; for i in {01..15}; do day 202610$i; done >d/h/site11.example.his; vantrel-inspect trade 11 | tail -n 15 | sed -n '1,2p;$p'
    60 minutes                8       7     0       0      0%        0%          -   0.1      -       -
    24 hours                500     393  1057       0  211.4%        0%         0%     0      0       -
    7 days                    0       0     0       3       -         -          -     -      -       0
    2026-11-16 until 13:07    1       0     1       1    100%        0%         0%     0     17      17
    q: points the traffic rules gave an incoming hit, a click sent out and a click of a
    trade's visitor on average; an ordinary one has 10.
    The last 0 days of the history
    date  in  unique  out  clicks
    The last 0 days of the history
    date  in  unique  out  clicks
    date        in  unique  out  clicks
    2026-10-02   1       2    3       4
    2026-10-15   1       2    3       4
    $ touch -d '2026-11-16 13:04:30' d/t/sum; vantrel-inspect trades | head -n 1; touch -d '2026-11-16 13:04:29' d/t/sum; vantrel-inspect trades | head -n 1; truncate -s 700 d/t/19; vantrel-inspect trade 19 | sed -n '/24 hours, /,/ 16:/p'; rm l/sys/cron.last; vantrel-inspect site | head -n 1
    Traffic of the last 60 minutes, 24 hours and 7 days up to 2026-11-16 13:04
    Traffic of the last 60 minutes, 24 hours and 7 days up to 2026-11-16 13:04: 3 minutes old, no run has stored anything since
    The last 24 hours, from the minute slots
    hour              in  unique  out  clicks
    2026-11-15 14:00   0       0    0       0
    2026-11-15 15:00   0       0    0       0
    2026-11-15 16:00   0       0    0       0
    The whole site up to 2026-11-16 13:04: 3 minutes old, no run has stored anything since

What cannot be answered.

    $ for command in '' site sites metrics alive list why preview trades trade events runs check; do vantrel-inspect $command --help | tr -s ' \n' ' '; echo; done
    Looks at a site of the maintenance run without changing it. Usage: vantrel-inspect [OPTIONS] SUBCOMMAND Options: -h,--help Show this help, or that of a command --version Show the version --site DIR Directory of the site, instead of the current one --json Print the view as JSON Subcommands: site The site as a whole: windows, hours, days sites Many sites, a line each, worst first metrics Figures for Prometheus, as a text file alive Was a list written just now? For monitoring list The outgoing list as visitors will see it why Why a trade stands where it does, step by step preview The next list beside the present one trades All trades and their traffic trade Everything about one trade events The last events of the log, explained runs The run history and its gaps check What is wrong, what a run now would do about it report All of it as a page for a browser Exit status: 0 fine; 1 check: something is off, other views: not available; 2 check: the run would end early; 3 wrong usage. 
    The site as a whole: windows, hours, days Usage: vantrel-inspect site [OPTIONS] Options: -h,--help Show this help, or that of a command --csv days|hours Print only this, as comma-separated values 
    Many sites, a line each, worst first Usage: vantrel-inspect sites [OPTIONS] directories... Positionals: directories DIR ... REQUIRED Their directories Options: -h,--help Show this help, or that of a command 
    Figures for Prometheus, as a text file Usage: vantrel-inspect metrics [OPTIONS] [directories...] Positionals: directories DIR ... Directories of sites Options: -h,--help Show this help, or that of a command --trades Also the windows of every trade 
    Was a list written just now? For monitoring Usage: vantrel-inspect alive [OPTIONS] Options: -h,--help Show this help, or that of a command --minutes N Within so many minutes (3) 
    The outgoing list as visitors will see it Usage: vantrel-inspect list [OPTIONS] Options: -h,--help Show this help, or that of a command 
    Why a trade stands where it does, step by step Usage: vantrel-inspect why [OPTIONS] [trade] Positionals: trade NAME|ID Its name or id Options: -h,--help Show this help, or that of a command --all All of them, a sentence each --with FILE=OTHER ... Another file in the place of a settings file --hour H:INT in [0 - 23] Quotas of this hour of the day --hits Credit the logs a run started now would read 
    The next list beside the present one Usage: vantrel-inspect preview [OPTIONS] Options: -h,--help Show this help, or that of a command --with FILE=OTHER ... Another file in the place of a settings file --hour H:INT in [0 - 23] Quotas of this hour of the day --hits Credit the logs a run started now would read --changed The largest changes first --list-file FILE Write the list's bytes there 
    All trades and their traffic Usage: vantrel-inspect trades [OPTIONS] Options: -h,--help Show this help, or that of a command --sort COLUMN Sort by a column, by its title --reverse The other way round --top N Only the first N, by in24 if not sorted --columns LIST ... These columns, such as in24,out24,left --wide All columns and all entries 
    Everything about one trade Usage: vantrel-inspect trade [OPTIONS] trade Positionals: trade NAME|ID REQUIRED Its name or id Options: -h,--help Show this help, or that of a command 
    The last events of the log, explained Usage: vantrel-inspect events [OPTIONS] [count] Positionals: count N How many (20) Options: -h,--help Show this help, or that of a command --since TIME From then on: 2026-11-23, 12:50, 90m, 12h, 2d --level LEVEL:{0,1} 1: only what ended a run; 0: the rest --trade NAME|ID Only of this trade 
    The run history and its gaps Usage: vantrel-inspect runs [OPTIONS] Options: -h,--help Show this help, or that of a command 
    What is wrong, what a run now would do about it Usage: vantrel-inspect check [OPTIONS] Options: -h,--help Show this help, or that of a command --user NAME Look with the rights of this user (root only) --verbose Tell also what is fine 
    $ for question in why 'why 11 --all' 'why 99' 'trade 0x0b' 'trades --columns id' 'trades --sort x' 'preview --with d/set' 'preview --with d/x=../formula' 'preview --with d/se=../formula' 'preview --with d/set=../gone' 'why 11 --hits' 'preview --list-file /dev/full' 'preview --list-file ../gone/x' 'report -o ../gone/x' 'list --site ../gone' 'check --user no-such-user'; do { vantrel-inspect $question 2>&1; echo $?; } | sed "s,$PWD,HERE," | paste -sd' '; done
    vantrel-inspect: why takes a trade, or --all 3
    vantrel-inspect: why takes a trade, or --all 3
    vantrel-inspect: there is no trade 99 1
    vantrel-inspect: there is no trade 0x0b 1
    vantrel-inspect: there is no column id 3
    vantrel-inspect: there is no column x 3
    vantrel-inspect: --with takes FILE=OTHER 3
    vantrel-inspect: --with cannot stand for d/x 3
    vantrel-inspect: d/se has a say in hits only: use --hits with it 3
    vantrel-inspect: there is no file HERE/../gone 3
    vantrel-inspect: there would be no list: cron has already run this minute (double cron detected) 1
    vantrel-inspect: /dev/full cannot be written 1
    vantrel-inspect: HERE/../gone/x cannot be written 1
    vantrel-inspect: HERE/../gone/x cannot be written 1
    vantrel-inspect: there is no directory ../gone 3
    vantrel-inspect: there is no user no-such-user 3
    $ for question in 'preview --hour 24' 'preview --hour -1' 'alive --minutes 0' 'alive --minutes 1000001' 'site --csv weeks' 'events --level 3' 'events many' 'trades --top x' '' lists sites trade 'trade 11 12' --no-such; do vantrel-inspect $question >../x 2>&1; printf "$? "; done; echo
    3 3 3 3 3 3 3 3 3 3 3 3 3 3 
    $ printf '%09999d' 1 >../x; vantrel-inspect preview --hour 23 --list-file ../x | head -n 1; stat -c %s ../x; vantrel-inspect why 29 --hour 0 | sed -n 1p
    The next outgoing list, for hour 23: 14 changes
    2876
    site29.example, id 29, judged for hour 0
    $ for size in 9000 8900; do truncate -s $size d/t/index; vantrel-inspect trades | tail -n 2; done; rm d/t/index; vantrel-inspect trades; vantrel-inspect why 11; vantrel-inspect report | grep -o '"unavailable[^]]*' | head -n 1; rm -r d/t; vantrel-inspect sites . | tail -n 2 | cut -c1-90
        all 10                              8      0   500     393   1057      0   211%     0      0
    Not shown: 9 reserved without traffic.
    vantrel-inspect: d/t/index holds fewer than ten entries
    vantrel-inspect: d/t/index cannot be opened
    vantrel-inspect: there would be no list: d/t/index
    "unavailable"
    fatal    .     never          -       5     -      -  10 seconds ago  l/sys/cron.run: hold
    1 site, 1 fatal
