#include "app/lattice.h"

namespace korv {

void Lattice::Output_Rules() {
    entete_fichier("\t\t\t***   Regles exaxtes intra noeud      ***\n", intra_exact_out);  // "exaxtes" it is
    entete_fichier("\t\t\t*** Regles approximatives intra noeud  ***\n", intra_approx_out);
    entete_fichier("\t\t\t***   Regles exactes inter noeuds     ***\n", inter_exact_out);
    entete_fichier("\t\t\t*** Regles approximatives inter noeuds ***\n", inter_approx_out);

    generate_intra_node_rules();
    generate_inter_node_rules();

    for (Output_Manager* const out :
         {&intra_exact_out, &intra_approx_out, &inter_exact_out, &inter_approx_out}) {
        out->flush();
    }
}

}  // namespace korv
