# A radiation spectrum file.
spectrum=$project/examples/spectrum.n42
cd "$folder"

say "A spectrum file of two detectors"
lines=6
run n42 info "$spectrum"

say "Its spectra, with times, rates and energies"
lines=8
run n42 list "$spectrum"

say "As a tree, in which every spectrum is a vector with its energies"
run n42 import "$spectrum" -o spectrum.xml
lines=12
run show -d 4 spectrum.xml

say "As columns"
lines=4
run n42 export "$spectrum"

say "To be looked at: a picture, and a page with zoom and values"
run n42 plot --title "Caesium-137 and cobalt-60" "$spectrum" -o spectrum.svg
run n42 plot --title "Caesium-137 and cobalt-60" "$spectrum" -o spectrum.html
mkdir -p "$project/build/demo" && cp spectrum.svg spectrum.html "$project/build/demo/"
note "open build/demo/spectrum.html in a browser"
