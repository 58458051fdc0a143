What the views print of one small site, to the letter. Where that is to change:
`tests/docs_test.sh BUILD_DIRECTORY --update`, and read the difference.

A site with two runs; among its trades one of each kind of listing, a boost and caps.

    $ vantrel-sample-site site --trades 9 --hits 30 --days 9 --minutes 4 >/dev/null
    $ set-trade.py site 11 mode=1 measure=4 threshold=100 below=110 above=80
    $ set-trade.py site 12 hours=5 quota=40 override=1
    $ set-trade.py site 13 forced=1 hours=3 skim=40
    $ set-trade.py site 14 mode=2
    $ set-trade.py site 15 guarantee=50 override=1
    $ set-trade.py site 16 mode=0
    $ cd site; printf '|14|1|3|\n|14|2|1|\n|14|3|2|' >d/caps
    $ vantrel-cron; vantrel-cron
    $ printf '11161300\n11161302\n11161303\nx\n11161307\n11161308\n' >l/sys/cron.run
    $ printf '|20261116%s||||\n' '1300|cron|1|d&#47;t&#47;12|0' '1301|cron|1|d&#47;t&#47;12|0' '1304|cron|3||0' '1305|cron|10|no|1' >>l/sys/sys.log
    $ find . -exec touch -h -d '2026-11-16 13:08:20' {} +

    $ vantrel-inspect site
    The whole site up to 2026-11-16 13:08
    period                       in  unique     out  clicks  out/in  proxy in  proxy out  q in  q out  q back
    60 minutes                 1635    1102    1594    1589   97.5%      5.1%       4.3%  12.2     14      14
    24 hours                  39949   27017   38869   38834   97.3%      4.9%       5.2%  12.1     14      14
    7 days                   265219  179088  259173  257957   97.7%      4.8%       5.2%  12.1     14      14
    2026-11-16 until 13:08    21808   14716   21268   21227   97.5%      5.1%         5%  12.1     14      14
    2026-11-15, day before    41061   27847   40381   40177   98.3%      4.9%       5.2%  12.2     14      14
    2026-11-09, week before   40186   27177   38988   38936     97%      4.8%       5.2%  12.1     14      14
    9 days recorded          338009  228337  328564  329242   97.2%      4.8%       5.2%  12.1     14      14
    q: points the traffic rules gave an incoming hit, a click sent out and a click of a
    trade's visitor on average; an ordinary one has 10.
    
    What no named trade is credited with, of 24 hours. Hits with a marker are counted
    a second time, here and in the sums.
    entry     collects                       in  share  clicks  share   out  share
    gallery   clicks to the gallery           0     0%       0     0%  5859  15.1%
    noref     visitors without a referrer  3872    10%    3681   9.5%     0     0%
    marked    hits with a marker           1185   3.1%       0     0%     0     0%
    nocookie  visitors without a cookie       0     0%    1971   5.1%     0     0%
    unknown   unknown names and ids        2359   6.1%    2212   5.7%     0     0%
    search    names listed in d/se         1539     4%    1479   3.8%     0     0%
    together                                       20%          24.1%        15.1%
    
    The last 24 hours, from the minute slots
    hour                in  unique   out  clicks
    2026-11-15 14:00  1671    1125  1616    1600
    2026-11-15 15:00  1699    1157  1611    1618
    2026-11-15 16:00  1681    1124  1632    1637
    2026-11-15 17:00  1694    1154  1642    1590
    2026-11-15 18:00  1670    1133  1608    1628
    2026-11-15 19:00  1663    1137  1635    1641
    2026-11-15 20:00  1679    1139  1589    1633
    2026-11-15 21:00  1665    1129  1638    1589
    2026-11-15 22:00  1650    1132  1611    1619
    2026-11-15 23:00  1628    1095  1617    1641
    2026-11-16 00:00  1678    1145  1604    1591
    2026-11-16 01:00  1659    1121  1653    1597
    2026-11-16 02:00  1666    1127  1613    1620
    2026-11-16 03:00  1695    1158  1625    1633
    2026-11-16 04:00  1675    1121  1617    1603
    2026-11-16 05:00  1630    1081  1617    1644
    2026-11-16 06:00  1671    1128  1653    1620
    2026-11-16 07:00  1649    1126  1631    1617
    2026-11-16 08:00  1643    1127  1603    1629
    2026-11-16 09:00  1636    1091  1609    1606
    2026-11-16 10:00  1700    1131  1625    1617
    2026-11-16 11:00  1645    1105  1612    1639
    2026-11-16 12:00  1660    1120  1612    1623
    2026-11-16 13:00   201     135   194     188
    
    The last 9 days of the history
    date           in  unique    out  clicks
    2026-11-07  36824   24850  35219   35956
    2026-11-08  35966   24399  34172   35329
    2026-11-09  40186   27177  38988   38936
    2026-11-10  37943   25532  37236   36963
    2026-11-11  35008   23575  34050   33855
    2026-11-12  37713   25430  37674   36825
    2026-11-13  36960   25025  35882   35912
    2026-11-14  36348   24502  34962   35289
    2026-11-15  41061   27847  40381   40177
    $ vantrel-inspect site --csv days
    date,rin,uin,out,clk,ctt,ctg,cef,rec,proxy_in,proxy_out,proxy_clk,rti,rto,rtc
    2026-11-07,36824,24850,35219,35956,30602,5348,28785,7058,1783,1824,1764,445690,493131,503472
    2026-11-08,35966,24399,34172,35329,30071,5251,28279,6851,1752,1768,1734,437645,478467,494652
    2026-11-09,40186,27177,38988,38936,33155,5775,31166,7816,1949,2019,1908,487598,545887,545186
    2026-11-10,37943,25532,37236,36963,31462,5495,29585,7467,1834,1936,1813,458048,521371,517564
    2026-11-11,35008,23575,34050,33855,28819,5030,27101,6825,1689,1767,1664,423006,476774,474062
    2026-11-12,37713,25430,37674,36825,31342,5477,29481,7552,1825,1959,1811,456090,527505,515641
    2026-11-13,36960,25025,35882,35912,30570,5336,28748,7191,1798,1863,1764,449033,502422,502865
    2026-11-14,36348,24502,34962,35289,30036,5246,28250,7009,1761,1813,1735,439613,489525,494129
    2026-11-15,41061,27847,40381,40177,34198,5975,32162,8092,1998,2094,1971,499538,565394,562564
    $ vantrel-inspect site --csv hours | head -n 3
    hour,rin,uin,out,clk,ctt,ctg,cef,rec,proxy_in,proxy_out,proxy_clk,rti,rto,rtc
    2026-11-15 14:00,1671,1125,1616,1600,1351,249,1270,318,90,87,81,20315,22624,22400
    2026-11-15 15:00,1699,1157,1611,1618,1386,232,1300,319,79,91,71,20609,22554,22652
    $ vantrel-inspect list
    Outgoing list of 2026-11-16 13:08, 7 trades
    rank  id  name            weight  second  state     skim   share   score  reason
       1  17  site17.example    1500       0  normal      56  37.04%  147.59  boost 150%
       2  12  site12.example     900       0  normal       -  22.22%  108.14  return quality
       3  18  site18.example     600       0  forced 1     -  14.81%  106.44  return quality
       4  19  site19.example     400       0  normal       -   9.88%  104.53  return quality
       5  13  site13.example     300       0  forced 1    40   7.41%  103.27  return quality
       6  11  site11.example     200       0  normal       -   4.94%   88.83  boost 80%
       7  14  site14.example     150       0  normal       -    3.7%      -4  cap out: 152.41% > 2%
    $ vantrel-inspect trades --wide
    Traffic of the last 60 minutes, 24 hours and 7 days up to 2026-11-16 13:08
    id  name                                  in60  uniq60  out60  clk60   in24  uniq24  out24  clk24    in07  uniq07   out07   clk07  ratio  quality  proxy  quota  left
     0  direct (reserved)                        0       0      0      0      0       0      0      0       0       0       0       0     0%        -      -      0     0
     1  gallery (clicks to the gallery)          0       0    238      0      0       0   5859      0       0       0   41206       0     0%        -      -      0     0
     2  content (reserved)                       0       0      0      0      0       0      0      0       0       0       0       0     0%        -      -      0     0
     3  noref (visitors without a referrer)    163     114      0    148   3872    2716      0   3681   26579   18634       0   25268     0%     12.5   4.6%      0     0
     4  marked (hits with a marker)             46       0      0      0   1185       0      0      0    8209       0       0       0     0%        0     0%      0     0
     5  nocookie (visitors without a cookie)     0       0      0     74      0       0      0   1971       0       0       0   13537     0%        -      -      0     0
     6  unknown (unknown names and ids)        101      66      0     92   2359    1652      0   2212   15344   10747       0   14374     0%     12.5   5.6%      0     0
     7  toplist (reserved)                       0       0      0      0      0       0      0      0       0       0       0       0     0%        -      -      0     0
     8  search (names listed in d/se)           65      48      0     59   1539    1064      0   1479   10455    7233       0   10068     0%     12.5     5%      0     0
     9  misc (reserved)                          0       0      0      0      0       0      0      0       0       0       0       0     0%        -      -      0     0
    10  spare (reserved)                         0       0      0      0      0       0      0      0       0       0       0       0     0%        -      -      0     0
    11  site11.example                         116      84    110    107   2743    1889   2889   2604   18244   12578   19214   17326   105%     12.5   4.6%      0     0
    12  site12.example                         443     315    480    434  10970    7647  11704  10451   73439   51195   78342   69967   106%     12.5     5%     40     0
    13  site13.example                          74      50     86     74   1825    1259   1949   1747   12079    8331   12920   11567   106%     12.5   4.1%      0     0
    14  site14.example                         146      99    166    143   3650    2551   3888   3480   23436   16374   24982   22338   106%     12.5   5.3%      0     0
    15  site15.example                          52      34     56     45   1223     869   1293   1152    7702    5471    8142    7261   105%     12.5   6.5%      0    49
    16  site16.example                         221     152    229    213   5470    3815   5849   5204   35858   25005   38347   34108   106%     12.5   5.3%      0   448
    17  site17.example                          62      39     72     58   1552    1034   1653   1477   10929    7287   11625   10381   106%     12.5   4.8%      0     0
    18  site18.example                          59      41     57     53   1369     968   1454   1302    9066    6406    9636    8629   106%     12.5   4.3%      0     0
    19  site19.example                          87      60    100     89   2192    1553   2331   2074   13879    9827   14759   13133   106%     12.5     5%      0     0
        all 20                                1635    1102   1594   1589  39949   27017  38869  38834  265219  179088  259173  257957    97%        -      -     40   497
    $ vantrel-inspect trades --columns left,in24 --sort left --top 3
    Traffic of the last 60 minutes, 24 hours and 7 days up to 2026-11-16 13:08
    id  name               left   in24
    16  site16.example      448   5470
    15  site15.example       49   1223
     0  direct (reserved)     0      0
        all 20              497  39949
    Not shown: 17 behind these.
    $ vantrel-inspect trades --sort in24 --top 2
    Traffic of the last 60 minutes, 24 hours and 7 days up to 2026-11-16 13:08
    id  name            in60  out60   in24  uniq24  out24  clk24  ratio    in07   out07
    12  site12.example   443    480  10970    7647  11704  10451   106%   73439   78342
    16  site16.example   221    229   5470    3815   5849   5204   106%   35858   38347
        all 20          1635   1594  39949   27017  38869  38834    97%  265219  259173
    Not shown: 18 behind these.
    $ vantrel-inspect trade site12.example
    site12.example, id 12, position 12
    
    setting            value
    address            http://www.site12.example/
    scoring            mode 1: gets visitors as long as it does not get too many for those it sends
    skim               none
    guarantee          none
    quota of clicks    in force for 5 more hours
      from 0:00         40 40 40 40 40 40 40 40 40 40 40 40
      from 12:00        40 40 40 40 40 40 40 40 40 40 40 40
    forced listing     no
    these three count  even while it sends too few visitors
    boost              none
    caps               none
    
    Windows up to 2026-11-16 13:08
    counter    60 minutes  24 hours   7 days  counts
    rin               443     10970    73439  incoming hits
    uin               315      7647    51195  unique incoming hits
    out               480     11704    78342  clicks sent to it
    clk               434     10451    69967  clicks of the visitors it sent
    ctt               368      8895    59551  of these, clicks to trades
    ctg                66      1556    10413  of these, clicks to the entry with id 1
    cef               346      8365    55985  of these, clicks within the limit of line 4 of d/set
    rec               102      2353    15744  clicks recorded for it
    proxy_in           24       544     3643  incoming hits through proxies
    proxy_out          27       609     4063  clicks sent to it through proxies
    proxy_clk          22       511     3408  clicks of its visitors through proxies
    rti              5560    137157   918078  quality of its incoming hits
    rto              6705    163841  1096848  quality of the clicks sent to it
    rtc              6064    146302   979587  quality of its visitors' clicks
    
    The last 24 hours, from the minute slots
    hour               in  unique  out  clicks
    2026-11-15 14:00  456     313  488     424
    2026-11-15 15:00  467     326  469     430
    2026-11-15 16:00  461     320  490     442
    2026-11-15 17:00  468     329  489     431
    2026-11-15 18:00  450     310  497     450
    2026-11-15 19:00  466     326  489     436
    2026-11-15 20:00  474     329  471     436
    2026-11-15 21:00  453     316  498     435
    2026-11-15 22:00  436     304  475     437
    2026-11-15 23:00  450     312  482     456
    2026-11-16 00:00  459     324  478     428
    2026-11-16 01:00  459     326  508     425
    2026-11-16 02:00  483     340  491     442
    2026-11-16 03:00  469     328  490     434
    2026-11-16 04:00  447     309  486     438
    2026-11-16 05:00  441     303  479     430
    2026-11-16 06:00  459     313  509     435
    2026-11-16 07:00  443     310  500     433
    2026-11-16 08:00  448     313  483     439
    2026-11-16 09:00  460     318  496     444
    2026-11-16 10:00  473     329  483     427
    2026-11-16 11:00  447     313  482     431
    2026-11-16 12:00  454     324  486     443
    2026-11-16 13:00   52      35   57      50
    
    The last 9 days of the history
    date           in  unique    out  clicks
    2026-11-07   8782    6122   9368    8367
    2026-11-08   8782    6122   9368    8367
    2026-11-09  11526    8035  12296   10981
    2026-11-10  11636    8112  12413   11086
    2026-11-11   9441    6581  10071    8994
    2026-11-12  10648    7423  11359   10145
    2026-11-13   9550    6658  10188    9099
    2026-11-14   8892    6198   9485    8471
    2026-11-15  11746    8188  12530   11191
    $ vantrel-inspect trade 2 | head -n 4
    content, id 2, position 2 (reserved entry: reserved)
    
    setting            value
    address
    $ vantrel-inspect why 11
    site11.example, id 11, judged for hour 13
    
    88.82825234  score, built in
      111.0353154  mean of the three windows by their weights
        114.8605769  return quality of the last 60 minutes: (2 p + p (0.5 q + 1)) / 3
          1456  rti, quality of the visitors it sent
          1532  rto, quality of the clicks sent to it
          1503  rtc, quality of its visitors' clicks
          98  p: rtc as a percentage of rto
          1.03228022  q: rtc / rti
          3  weight of this window in d/out.mod
        107.8372985  return quality of the last 24 hours: (2 p + p (0.5 q + 1)) / 3
          34293  rti, quality of the visitors it sent
          40438  rto, quality of the clicks sent to it
          36461  rtc, quality of its visitors' clicks
          90  p: rtc as a percentage of rto
          1.063219899  q: rtc / rti
          1.889  added: uin / 1000
          2  weight of this window in d/out.mod
        105.9555648  return quality of the last 7 days: (2 p + p (0.5 q + 1)) / 3
          228085  rti, quality of the visitors it sent
          269056  rto, quality of the clicks sent to it
          242615  rtc, quality of its visitors' clicks
          90  p: rtc as a percentage of rto
          1.063704321  q: rtc / rti
          1  weight of this window in d/out.mod
      111.0353154  no boost for fresh traffic
        110  out in the last 60 minutes
        72  out in 24 hours / 40, without its fraction
      111.0353154  mode 1: passed
        105.3226394  percent: out of rin in 24 hours
        0  no limit from 1,000 unique hits on
        1889  unique hits in 24 hours
      111.0353154  not lifted
      88.82825234  boost of its own: 80 percent
        105  out per rin in percent in 24 hours
        100  is the threshold
        110  percent below it
        80  percent from it on
    10  rank among all 20 entries of the index, reserved ones included
      103.2742145  score of the entry above
        site13.example  its name
        13  its id
      0  score of the entry below
        direct  its name
        0  its id
    true  admitted: it sends enough
      1889  unique hits in 24 hours
        933  is the least, on line 6 of d/set
      0  quota of hour 13: not open
        110  clicks sent in the last 60 minutes
        0  hours it is in force, -1 for ever
      0  guaranteed clicks left: not open
      0  forced listing: not in force
      false  a quota, guarantee or forced listing overrides the least
      1  mode; 0 keeps it out
    200  weight
      5  admitted entries above it
      14  weights in d/out.set
    true  listed: both conditions hold
      true  plays a part: has a weight in a mode other than 0, or a skim
      true  moves traffic: hits in 24 hours, a quota of this hour or a guarantee
      true  is a trade: id above 9
    normal  state in the list
    -1  no skim
      -1  its own skim, -1 for none
    
    Rank 10 of 20: its visitors' return quality is 111.04, its own boost makes 80 % of it; it has weight 200.
    $ vantrel-inspect why 13 --hits
    vantrel-inspect: there would be no list: another run was let in in this minute
    [1]
    $ vantrel-inspect why 14
    site14.example, id 14, judged for hour 13
    
    -4  score, built in
      103.9816413  mean of the three windows by their weights
        101.4358974  return quality of the last 60 minutes: (2 p + p (0.5 q + 1)) / 3
          1846  rti, quality of the visitors it sent
          2298  rto, quality of the clicks sent to it
          1988  rtc, quality of its visitors' clicks
          86  p: rtc as a percentage of rto
          1.076923077  q: rtc / rti
          3  weight of this window in d/out.mod
        107.3749116  return quality of the last 24 hours: (2 p + p (0.5 q + 1)) / 3
          45657  rti, quality of the visitors it sent
          54406  rto, quality of the clicks sent to it
          48706  rtc, quality of its visitors' clicks
          89  p: rtc as a percentage of rto
          1.066780559  q: rtc / rti
          2.551  added: uin / 1000
          2  weight of this window in d/out.mod
        104.8323323  return quality of the last 7 days: (2 p + p (0.5 q + 1)) / 3
          293044  rti, quality of the visitors it sent
          349810  rto, quality of the clicks sent to it
          312780  rtc, quality of its visitors' clicks
          89  p: rtc as a percentage of rto
          1.067348248  q: rtc / rti
          1  weight of this window in d/out.mod
      103.9816413  no boost for fresh traffic
        166  out in the last 60 minutes
        97  out in 24 hours / 40, without its fraction
      -4  mode 2: failed, the score is a code
        152.4108193  percent measured
        2  percent is the limit
        3  least cef per uin in percent, -1 for none
        2  most out per uin in percent, -1 for none
        1  least ctt per out in percent, -1 for none
      -4  not lifted
      -4  no boost of its own
    20  rank among all 20 entries of the index, reserved ones included
      0  score of the entry above
        site16.example  its name
        16  its id
    true  admitted: it sends enough
      2551  unique hits in 24 hours
        933  is the least, on line 6 of d/set
      0  quota of hour 13: not open
        166  clicks sent in the last 60 minutes
        0  hours it is in force, -1 for ever
      0  guaranteed clicks left: not open
      0  forced listing: not in force
      false  a quota, guarantee or forced listing overrides the least
      2  mode; 0 keeps it out
    150  weight
      6  admitted entries above it
      14  weights in d/out.set
    true  listed: both conditions hold
      true  plays a part: has a weight in a mode other than 0, or a skim
      true  moves traffic: hits in 24 hours, a quota of this hour or a guarantee
      true  is a trade: id above 9
    normal  state in the list
    -1  no skim
      -1  its own skim, -1 for none
    
    Rank 20 of 20: its cap stopped it, it got 152.41 % of its unique hits; the most allowed is 2 %; it has weight 150.
    $ vantrel-inspect why 15 --hour 12
    site15.example, id 15, judged for hour 12
    
    0  score, built in
      97.3452812  mean of the three windows by their weights
        90.28220859  return quality of the last 60 minutes: (2 p + p (0.5 q + 1)) / 3
          652  rti, quality of the visitors it sent
          789  rto, quality of the clicks sent to it
          616  rtc, quality of its visitors' clicks
          78  p: rtc as a percentage of rto
          0.9447852761  q: rtc / rti
          3  weight of this window in d/out.mod
        104.294799  return quality of the last 24 hours: (2 p + p (0.5 q + 1)) / 3
          15321  rti, quality of the visitors it sent
          18107  rto, quality of the clicks sent to it
          16114  rtc, quality of its visitors' clicks
          88  p: rtc as a percentage of rto
          1.051759024  q: rtc / rti
          0.869  added: uin / 1000
          2  weight of this window in d/out.mod
        104.6354634  return quality of the last 7 days: (2 p + p (0.5 q + 1)) / 3
          96475  rti, quality of the visitors it sent
          114038  rto, quality of the clicks sent to it
          101692  rtc, quality of its visitors' clicks
          89  p: rtc as a percentage of rto
          1.054076186  q: rtc / rti
          1  weight of this window in d/out.mod
      97.3452812  no boost for fresh traffic
        56  out in the last 60 minutes
        32  out in 24 hours / 40, without its fraction
      0  mode 0: failed, the score is a code
      0  not lifted
      0  no boost of its own
    18  rank among all 20 entries of the index, reserved ones included
      0  score of the entry above
        spare  its name
        10  its id
      0  score of the entry below
        site16.example  its name
        16  its id
    false  not admitted: mode 0
      869  unique hits in 24 hours
        933  is the least, on line 6 of d/set
      0  quota of hour 12: not open
        56  clicks sent in the last 60 minutes
        0  hours it is in force, -1 for ever
      49  guaranteed clicks left: not open
      0  forced listing: not in force
      true  a quota, guarantee or forced listing overrides the least
      0  mode; 0 keeps it out
    0  no weight: not admitted
    false  not listed
      false  plays a part: has a weight in a mode other than 0, or a skim
      true  moves traffic: hits in 24 hours, a quota of this hour or a guarantee
      true  is a trade: id above 9
    quota or guarantee  state in the list
    -1  no skim
      -1  its own skim, -1 for none
    
    Rank 18 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
    $ vantrel-inspect why --all
    id  name            why
     5  nocookie        Rank 1 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
     3  noref           Rank 2 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
     6  unknown         Rank 3 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
     8  search          Rank 4 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
    17  site17.example  Rank 5 of 20: its visitors' return quality is 98.39, its own boost makes 150 % of it; it has weight 1500.
    12  site12.example  Rank 6 of 20: its visitors' return quality is 108.14; it has weight 900.
    18  site18.example  Rank 7 of 20: its visitors' return quality is 106.44; it has weight 600.
    19  site19.example  Rank 8 of 20: its visitors' return quality is 104.53; it has weight 400.
    13  site13.example  Rank 9 of 20: its visitors' return quality is 103.27; it has weight 300.
    11  site11.example  Rank 10 of 20: its visitors' return quality is 111.04, its own boost makes 80 % of it; it has weight 200.
     0  direct          Rank 11 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
     1  gallery         Rank 12 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
     2  content         Rank 13 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
     4  marked          Rank 14 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
     7  toplist         Rank 15 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
     9  misc            Rank 16 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
    10  spare           Rank 17 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
    15  site15.example  Rank 18 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
    16  site16.example  Rank 19 of 20: mode 0 keeps it from weights; it has no weight and is not listed.
    14  site14.example  Rank 20 of 20: its cap stopped it, it got 152.41 % of its unique hits; the most allowed is 2 %; it has weight 150.
    $ printf '|100|100|120|0|2|1|0||10|uin24/2+cef60|' >../formula; vantrel-inspect preview --with d/out.mod=../formula
    The next outgoing list, for hour 13: 5 changes
    id  name            rank  new  weight   new   share     new  change   reason
    12  site12.example     2    1     900  1500  22.22%  37.04%  changes  formula
    19  site19.example     4    2     400   900   9.88%  22.22%  changes  formula
    17  site17.example     1    3    1500   600  37.04%  14.81%  changes  boost 150%
    11  site11.example     6    4     200   400   4.94%   9.88%  changes  boost 80%
    13  site13.example     5    5     300   300   7.41%   7.41%           formula
    18  site18.example     3    6     600   200  14.81%   4.94%  changes  formula
    14  site14.example     7    7     150   150    3.7%    3.7%           cap out: 152.41% > 2%
    $ vantrel-inspect preview --hits --changed
    The run would end before its list: another run was let in in this minute
    [2]
    $ vantrel-inspect events
    2026-11-16 13:00  d/t/12  the run went on, 2 times, last at 2026-11-16 13:01
        A trade's statistics file cannot be written; this minute is not stored in it.
        -> Give the run's user write permission on the file.
    2026-11-16 13:04  gap  the run went on
        The run history has a gap: one of the last 39 minutes has no run, or this one lasted into the next minute. A synchronisation follows.
        -> Nothing after a reboot; if it repeats, check the scheduler and the length of the runs.
    2026-11-16 13:05  no  (cron, code 10)
    $ vantrel-inspect runs
    2026-11-16 13:00 to 2026-11-16 13:00  1 run
      gap: 1 minute without a run
    2026-11-16 13:02 to 2026-11-16 13:03  2 runs
      gap: 3 minutes without a run
    2026-11-16 13:07 to 2026-11-16 13:08  2 runs
    1 line of the run history without a run stamp
    $ vantrel-inspect check | grep -v 'looked at as root'
    warning: l/sys/cron.run: 1 line no run wrote: "x"; the run behind one reads a single minute of logs -> take the lines out; a power cut or another program left them
    warning: l/sys/cron.run: 2 gaps in the last 6 runs, before 11161302, before 11161307; the run behind it counted what had come in -> see vantrel-inspect runs; a reboot explains one, a busy machine many
    warning: events: 1 run ended early in the last hour: no; what came in in their minutes is not counted; the last early end was at 2026-11-16 13:05 -> see vantrel-inspect events for what each means
    ok: 29 things looked at: scheduler, disk, d/t/index, d/t/sum, l/in, l/out, d/t, d/h, d/jb, d/ds, d/se, d/proxy, d/traffic.set, d/geo.rating, d/ip.psv, d/agent.rating, d/request.rating, d/tags.rating, d/set, d/out.mod, d/out.set, d/caps, d/nm/track, d/alerts, sh_sync.cgi, sh_hta.cgi, sh_top.cgi, d/backup, list
    The next run would reach its end, but something is off. Something is being lost.
    $ vantrel-inspect sites . ..
    verdict  site  last run        trades  listed  in60  out60  backup          worst finding
    fatal    ..    never                -       -     -      -  never           .: this is no site: it has no folder d and no folder l
    warning  .     10 seconds ago       9       7  1635   1594  10 seconds ago  l/sys/cron.run: 1 line no run wrote: "x"; the run behind one reads a single minute of logs
    2 sites, 1 fatal, 1 warning
    [2]
    $ vantrel-inspect alive --minutes 9
    VANTREL OK: the list was written 10 seconds ago | age=10s;540;1080
The data of its page, of which tests/page_test.py looks at what it shows:

    $ vantrel-inspect report | sed -n 's/"directory":"[^"]*"//; s/,"[^"]*",[a-z]*,\[-2/,USER,[-2/; /id="data"/p' | cksum
    2228398387 36800

    $ vantrel-inspect metrics --trades | sed '/^#/d; /{[^}]*id="1[^2]"/d; s/{site="[^"]*"/{/'
    vantrel_check_status{} 1
    vantrel_last_run_timestamp_seconds{} 1794834500
    vantrel_list_timestamp_seconds{} 1794834500
    vantrel_backup_timestamp_seconds{} 1794834500
    vantrel_events_last_hour{,code="1",level="0"} 2
    vantrel_events_last_hour{,code="10",level="1"} 1
    vantrel_events_last_hour{,code="3",level="0"} 1
    vantrel_run_gaps{} 2
    vantrel_run_gap_seconds{} 240
    vantrel_trades{} 9
    vantrel_listed_trades{} 7
    vantrel_hits{,window="60m",counter="rin"} 1635
    vantrel_hits{,window="60m",counter="uin"} 1102
    vantrel_hits{,window="60m",counter="proxy_in"} 83
    vantrel_hits{,window="24h",counter="rin"} 39949
    vantrel_hits{,window="24h",counter="uin"} 27017
    vantrel_hits{,window="24h",counter="proxy_in"} 1942
    vantrel_hits{,window="7d",counter="rin"} 265219
    vantrel_hits{,window="7d",counter="uin"} 179088
    vantrel_hits{,window="7d",counter="proxy_in"} 12854
    vantrel_clicks{,window="60m",counter="out"} 1594
    vantrel_clicks{,window="60m",counter="clk"} 1589
    vantrel_clicks{,window="60m",counter="ctt"} 1334
    vantrel_clicks{,window="60m",counter="ctg"} 255
    vantrel_clicks{,window="60m",counter="cef"} 1269
    vantrel_clicks{,window="60m",counter="rec"} 312
    vantrel_clicks{,window="60m",counter="proxy_out"} 68
    vantrel_clicks{,window="60m",counter="proxy_clk"} 78
    vantrel_clicks{,window="24h",counter="out"} 38869
    vantrel_clicks{,window="24h",counter="clk"} 38834
    vantrel_clicks{,window="24h",counter="ctt"} 33052
    vantrel_clicks{,window="24h",counter="ctg"} 5782
    vantrel_clicks{,window="24h",counter="cef"} 31098
    vantrel_clicks{,window="24h",counter="rec"} 7798
    vantrel_clicks{,window="24h",counter="proxy_out"} 2023
    vantrel_clicks{,window="24h",counter="proxy_clk"} 1918
    vantrel_clicks{,window="7d",counter="out"} 259173
    vantrel_clicks{,window="7d",counter="clk"} 257957
    vantrel_clicks{,window="7d",counter="ctt"} 219582
    vantrel_clicks{,window="7d",counter="ctg"} 38334
    vantrel_clicks{,window="7d",counter="cef"} 206493
    vantrel_clicks{,window="7d",counter="rec"} 51952
    vantrel_clicks{,window="7d",counter="proxy_out"} 13451
    vantrel_clicks{,window="7d",counter="proxy_clk"} 12666
    vantrel_quality_points{,window="60m",counter="rti"} 19948
    vantrel_quality_points{,window="60m",counter="rto"} 22255
    vantrel_quality_points{,window="60m",counter="rtc"} 22185
    vantrel_quality_points{,window="24h",counter="rti"} 484627
    vantrel_quality_points{,window="24h",counter="rto"} 544105
    vantrel_quality_points{,window="24h",counter="rtc"} 543615
    vantrel_quality_points{,window="7d",counter="rti"} 3212926
    vantrel_quality_points{,window="7d",counter="rto"} 3628878
    vantrel_quality_points{,window="7d",counter="rtc"} 3612011
    vantrel_trade_hits{,id="12",trade="site12.example",window="60m",counter="rin"} 443
    vantrel_trade_hits{,id="12",trade="site12.example",window="60m",counter="uin"} 315
    vantrel_trade_hits{,id="12",trade="site12.example",window="60m",counter="proxy_in"} 24
    vantrel_trade_hits{,id="12",trade="site12.example",window="24h",counter="rin"} 10970
    vantrel_trade_hits{,id="12",trade="site12.example",window="24h",counter="uin"} 7647
    vantrel_trade_hits{,id="12",trade="site12.example",window="24h",counter="proxy_in"} 544
    vantrel_trade_hits{,id="12",trade="site12.example",window="7d",counter="rin"} 73439
    vantrel_trade_hits{,id="12",trade="site12.example",window="7d",counter="uin"} 51195
    vantrel_trade_hits{,id="12",trade="site12.example",window="7d",counter="proxy_in"} 3643
    vantrel_trade_clicks{,id="12",trade="site12.example",window="60m",counter="out"} 480
    vantrel_trade_clicks{,id="12",trade="site12.example",window="60m",counter="clk"} 434
    vantrel_trade_clicks{,id="12",trade="site12.example",window="60m",counter="ctt"} 368
    vantrel_trade_clicks{,id="12",trade="site12.example",window="60m",counter="ctg"} 66
    vantrel_trade_clicks{,id="12",trade="site12.example",window="60m",counter="cef"} 346
    vantrel_trade_clicks{,id="12",trade="site12.example",window="60m",counter="rec"} 102
    vantrel_trade_clicks{,id="12",trade="site12.example",window="60m",counter="proxy_out"} 27
    vantrel_trade_clicks{,id="12",trade="site12.example",window="60m",counter="proxy_clk"} 22
    vantrel_trade_clicks{,id="12",trade="site12.example",window="24h",counter="out"} 11704
    vantrel_trade_clicks{,id="12",trade="site12.example",window="24h",counter="clk"} 10451
    vantrel_trade_clicks{,id="12",trade="site12.example",window="24h",counter="ctt"} 8895
    vantrel_trade_clicks{,id="12",trade="site12.example",window="24h",counter="ctg"} 1556
    vantrel_trade_clicks{,id="12",trade="site12.example",window="24h",counter="cef"} 8365
    vantrel_trade_clicks{,id="12",trade="site12.example",window="24h",counter="rec"} 2353
    vantrel_trade_clicks{,id="12",trade="site12.example",window="24h",counter="proxy_out"} 609
    vantrel_trade_clicks{,id="12",trade="site12.example",window="24h",counter="proxy_clk"} 511
    vantrel_trade_clicks{,id="12",trade="site12.example",window="7d",counter="out"} 78342
    vantrel_trade_clicks{,id="12",trade="site12.example",window="7d",counter="clk"} 69967
    vantrel_trade_clicks{,id="12",trade="site12.example",window="7d",counter="ctt"} 59551
    vantrel_trade_clicks{,id="12",trade="site12.example",window="7d",counter="ctg"} 10413
    vantrel_trade_clicks{,id="12",trade="site12.example",window="7d",counter="cef"} 55985
    vantrel_trade_clicks{,id="12",trade="site12.example",window="7d",counter="rec"} 15744
    vantrel_trade_clicks{,id="12",trade="site12.example",window="7d",counter="proxy_out"} 4063
    vantrel_trade_clicks{,id="12",trade="site12.example",window="7d",counter="proxy_clk"} 3408
    vantrel_trade_quality_points{,id="12",trade="site12.example",window="60m",counter="rti"} 5560
    vantrel_trade_quality_points{,id="12",trade="site12.example",window="60m",counter="rto"} 6705
    vantrel_trade_quality_points{,id="12",trade="site12.example",window="60m",counter="rtc"} 6064
    vantrel_trade_quality_points{,id="12",trade="site12.example",window="24h",counter="rti"} 137157
    vantrel_trade_quality_points{,id="12",trade="site12.example",window="24h",counter="rto"} 163841
    vantrel_trade_quality_points{,id="12",trade="site12.example",window="24h",counter="rtc"} 146302
    vantrel_trade_quality_points{,id="12",trade="site12.example",window="7d",counter="rti"} 918078
    vantrel_trade_quality_points{,id="12",trade="site12.example",window="7d",counter="rto"} 1096848
    vantrel_trade_quality_points{,id="12",trade="site12.example",window="7d",counter="rtc"} 979587
