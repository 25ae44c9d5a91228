#include "files/WholeFile.h"

namespace pointloom {

// A disk that fills up takes a part and gives its reason only when asked for the rest; a commit no longer
// knows why a write failed.
bool commitWhole(QSaveFile& file, const QByteArray& text) {
    qint64 done = 0;
    while (done < text.size()) {
        const qint64 written = file.write(text.constData() + done, text.size() - done);
        if (written <= 0)
            return false;
        done += written;
    }
    return file.flush() && file.commit();
}

}
