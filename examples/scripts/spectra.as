// A line for each spectrum of spectrum files: spectra.as FILE...
void main(array<string>@ args) {
    for (uint i = 0; i < args.length(); ++i) {
        Tree t("spectra"), info("info");
        int result = uxtree_n42(t, args[i], null, info, 0);
        if (result != 0) {
            print(args[i] + ":", "no spectrum file, result", result);
            continue;
        }
        array<Tree@>@ spectra = t.walk("Spectrum");
        for (uint n = 0; n < spectra.length(); ++n) {
            for (Tree@ data = spectra[n].first; data !is null; @data = data.next) {
                if (data.tag.findFirst("ChannelData") != 0) continue;
                array<string>@ counts = data.value.split(" ");
                double sum = 0;
                for (uint c = 0; c < counts.length(); ++c) sum += parseFloat(counts[c]);
                print(spectra[n].parent.label, spectra[n]["MeasurementClassCode"].value + ":",
                      counts.length(), "channels,", sum, "counts");
            }
        }
    }
}
