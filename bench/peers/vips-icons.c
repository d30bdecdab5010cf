// Writes a plan's icons with libvips, without a script's costs:
//   vips-icons SOURCE PLAN FOLDER
// PLAN has a line "SIDE FILE" for each icon. The source is decoded once, and halved while that leaves enough
// for the next smaller icon. Each size is reduced once (Lanczos 3, on premultiplied colours) from the
// smallest copy that suffices, and compressed once (default options); its other files are copies. One thread.
#include <stdio.h>
#include <vips/vips.h>

enum { mostSides = 4096, mostHalves = 16 };

/// Ends the program with libvips' own words where `result` is not 0.
static void check(int result) {
    if (result != 0) {
        fputs(vips_error_buffer(), stderr);
        exit(1);
    }
}

static VipsImage* read_source(const char* file) {
    VipsImage *source = vips_image_new_from_file(file, NULL), *srgb = NULL, *premultiplied = NULL, *bytes = NULL;
    check(source == NULL || vips_colourspace(source, &srgb, VIPS_INTERPRETATION_sRGB, NULL));
    check(vips_image_hasalpha(srgb) ? vips_premultiply(srgb, &premultiplied, NULL)
                                    : vips_copy(srgb, &premultiplied, NULL));
    check(vips_cast_uchar(premultiplied, &bytes, NULL));
    return vips_image_copy_memory(bytes);
}

static VipsImage* resized(VipsImage* picture, double part) {
    VipsImage* result = NULL;
    check(vips_resize(picture, &result, part, NULL));
    return result;
}

static void write_icon(VipsImage* picture, int side, const char* file) {
    VipsImage *reduced = resized(picture, (double)side / picture->Xsize), *straight = NULL, *bytes = NULL;
    check(vips_image_hasalpha(reduced) ? vips_unpremultiply(reduced, &straight, NULL)
                                       : vips_copy(reduced, &straight, NULL));
    check(vips_cast_uchar(straight, &bytes, NULL) || vips_pngsave(bytes, file, NULL));
    VIPS_UNREF(bytes);
    VIPS_UNREF(straight);
    VIPS_UNREF(reduced);
}

int main(int argc, char** argv) {
    check(argc != 4 || VIPS_INIT(argv[0]));
    vips_concurrency_set(1);
    VipsImage* copies[mostHalves] = {read_source(argv[1])};
    static char written[mostSides][2048];
    char line[1024], name[1024], path[2048];
    FILE* plan = fopen(argv[2], "r");
    for (int side; plan != NULL && fgets(line, sizeof line, plan) != NULL;) {
        if (sscanf(line, "%d %1023s", &side, name) != 2 || side >= mostSides)
            return 2;
        snprintf(path, sizeof path, "%s/%s", argv[3], name);
        gchar *folder = g_path_get_dirname(path), *data = NULL;
        gsize length = 0;
        g_mkdir_with_parents(folder, 0777);
        g_free(folder);
        if (written[side][0] != 0) {
            if (!g_file_get_contents(written[side], &data, &length, NULL) ||
                !g_file_set_contents(path, data, (gssize)length, NULL))
                return 1;
            g_free(data);
            continue;
        }
        int i = 0;
        for (; i + 1 < mostHalves && copies[i]->Xsize / 2 >= side; ++i) {
            if (copies[i + 1] == NULL)
                copies[i + 1] = vips_image_copy_memory(resized(copies[i], 0.5));
        }
        write_icon(copies[i], side, path);
        snprintf(written[side], sizeof written[side], "%s", path);
    }
    return 0;
}
