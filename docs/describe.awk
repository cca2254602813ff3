# Puts a line of documentation in front of each conversion in the header, made from its name: what it reads, what it
# writes. The contracts are those of the groups; this tells the members of a group apart.

BEGIN {
  split("RGB R,G,B;BGR B,G,R;SBGR B,G,R;YUV Y,U,V;YCbCr Y,Cb,Cr;YCrCb Y,Cr,Cb;CbYCr Cb,Y,Cr;HLS H,L,S;HSV H,S,V;" \
        "XYZ X,Y,Z;LUV L,u,v;Lab L,a,b;YCC Y,C1,C2;YCoCg Y,Co,Cg", pairs, ";")
  for (i in pairs) { split(pairs[i], pair, " "); channels[pair[1]] = pair[2]; gsub(",", ", ", channels[pair[1]]) }
  type["8u"] = "8-bit"; type["8s"] = "signed 8-bit"; type["16u"] = "16-bit"; type["16s"] = "signed 16-bit"
  type["32s"] = "signed 32-bit"; type["32f"] = "32-bit float"
  variant["709CSC"] = "BT.709, luma 16..235"; variant["709HDTV"] = "BT.709, full range"
  variant["Filter"] = "with interpolated chroma"; variant["Interlace"] = "each field by itself"
  variant["Rev"] = "reversible"
  sampling["422"] = " 4:2:2"; sampling["420"] = " 4:2:0"; sampling["411"] = " 4:1:1"; sampling["1620"] = " 4 x 4"
}

# The part of text that matches the pattern, which is cut off its beginning; nothing when it does not begin so.
function take(pattern,    found) {
  if (!match(rest, "^(" pattern ")")) return ""
  found = substr(rest, 1, RLENGTH)
  rest = substr(rest, RLENGTH + 1)
  return found
}

# One side of a conversion: samples of a type, in a layout, of a space such as YCbCr420.
function side(space, types, layout,    base, figure, order) {
  base = space; sub(/[0-9]+(Dither|Gamma)?$/, "", base)
  figure = figureOf(space)
  order = channels[base]
  if (figure ~ /^(565|555|444)$/) return "16-bit words, " order " in " bits(figure) " bits from the lowest up"
  types = types sampling[figure]
  if (space == "CFA") return types " samples of a colour filter array"
  if (layout == "C1") return types " samples, one channel"
  if (layout == "C2") return types " packed " (base == "CbYCr" ? "Cb, Y, Cr, Y" : packed(order))
  if (layout == "P2") return types " plane of Y and plane of pairs Cb, Cr"
  if (order == "") return types " samples, " (layout ~ /4/ && layout !~ /A/ ? 4 : 3) kind(layout) " channels" alpha(layout)
  return types kind(layout) " " order alpha(layout) (layout ~ /^C4/ ? " and a fourth" : "")
}

# Y, Cb, Cr as the bytes of two pixels: Y, Cb, Y, Cr.
function packed(order,    c) { split(order, c, ", "); return c[1] ", " c[2] ", " c[1] ", " c[3] }
function bits(figure) { return substr(figure, 1, 1) ", " substr(figure, 2, 1) " and " substr(figure, 3, 1) }
function kind(layout) { return layout ~ /P/ ? " planar" : " interleaved" }
function alpha(layout) { return layout ~ /A|P4/ ? " with alpha" : "" }

function figureOf(space) { gsub(/[^0-9]/, "", space); return space }

function describe(name,    parts, n, spaces, to, types, layouts, from, text) {
  n = split(substr(name, 5), parts, "_")
  spaces = parts[1]
  from = to = spaces
  if (match(spaces, /[a-zA-Z0-9]To[A-Z0-9]/)) {
    from = substr(spaces, 1, RSTART)
    to = substr(spaces, RSTART + 3)
    if (to ~ /^[0-9]/) to = "YCbCr" to
  }
  rest = parts[n - 1]
  types["from"] = take("[0-9]+[a-z]"); types["to"] = rest == "" ? types["from"] : rest
  rest = parts[n]
  inPlace = gsub("I", "", rest)
  region = sub("R$", "", rest)
  layouts["from"] = take("A?[CP][0-9]"); layouts["to"] = rest == "" ? layouts["from"] : rest
  text = side(from, type[types["from"]], layouts["from"])
  if (inPlace) text = text ", in place"
  else if (from != to || types["from"] != types["to"] || layouts["from"] != layouts["to"])
    text = text " to " side(to, type[types["to"]], layouts["to"])
  if (n == 4 && !(parts[2] == "Filter" && figureOf(from) == figureOf(to))) text = text "; " variant[parts[2]]
  if (n == 3 && spaces ~ /(411|1620)To420$|420To411$/) text = text "; averages chroma"
  if (spaces ~ /Dither$/) text = text "; dithered"
  if (spaces ~ /Gamma$/) text = text "; through the curve of BT.709"
  if (!region) text = text "; whole images without gaps"
  return toupper(substr(text, 1, 1)) substr(text, 2) "."
}

/^KIPAPI KipStatus kipi/ {
  name = $3
  sub(/\(.*/, "", name)
  print "/** @brief " describe(name) " */"
}
{ print }
